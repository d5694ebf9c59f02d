#ifndef SHELLFIXTURE_H
#define SHELLFIXTURE_H

#include "observed.h"
#include "settings.h"

#include <QHash>
#include <QObject>

#include <memory>

/// What the tests of the shell share. Each test begins with nothing plugged in, no settings files,
/// an empty log and a settings dialog that has gone quiet.
class ShellFixture : public QObject, protected Observed
{
    Q_OBJECT

protected:
    ShellFixture();

    /// One line of the traffic as "<connection> <request>", e.g. "1 getDevicePid", "2 open".
    static QStringList on(int connection, const QStringList &requests);

    /// Plugs in that model; its first connection is 1.
    void plug(quint32 model);

    /// What the connections asked since the last call, in order, meter reads left out. Connections
    /// are numbered from 1 in the order in which they were opened.
    QStringList takeTraffic();

    /// What one panel says and asks when it is made.
    struct PanelStart {
        QStringList log;
        QStringList requests;
    };
    /// Lets @p count panels of that model be made on one newly plugged-in device, one after the
    /// other, then unplugs it and forgets everything.
    QList<PanelStart> panelStarts(quint32 model, int count = 1);

    /// What the settings dialog says and asks when a device is first brought to the default
    /// choices, and every time after that.
    static QStringList firstEngineLog();
    static QStringList firstEngineRequests();
    static QStringList laterEngineLog();
    static QStringList laterEngineRequests();

    /// Deletes what waits for the event loop to delete it; lets no timer fire.
    static void deleteDeferred();

    Settings &settings() { return *m_settings; }

protected slots:
    void init();
    void cleanup();

private:
    std::unique_ptr<Settings> m_settings;
    QHash<quint32, qsizetype> m_connections;
};

#endif
