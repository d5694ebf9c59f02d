#ifndef SETTINGSFIXTURE_H
#define SETTINGSFIXTURE_H

#include "observed.h"
#include "settings.h"

#include <QComboBox>
#include <QObject>
#include <QTest>

#include <memory>

/// A test of the settings dialog against the simulated interface.
///
/// Each test function begins with a sane interface that is not plugged in, an empty data folder and
/// no dialog; in the end the dialog is deleted.
class SettingsFixture : public QObject, protected Observed
{
    Q_OBJECT

protected:
    /// Without a device there is no second process, only pipes within this one.
    explicit SettingsFixture(Device device = Device::Simulated)
        : Observed(device)
    { }

    /// Plugs in a model.
    void plug() { Observed::plug(VESMORA_PID_RX1); }
    /// Constructs the dialog and waits until it listens. Its log up to then is startLog().
    void openDialog();
    /// Plugs in, constructs the dialog and connects it to the driver, and forgets what all that
    /// logged and sent.
    void openConnectedDialog();
    void closeDialog() { m_dialog.reset(); }
    Settings &dialog() { return *m_dialog; }
    static QStringList startLog();

    /// The combo box called so; fatal when there is none.
    QComboBox &box(const char *name);
    /// Chooses @p text as the user does. Where it is chosen already, another item is put in its
    /// place first, unnoticed.
    void choose(const char *name, const QString &text);
    /// Chooses it without running the box's sequence.
    void presetBox(const char *name, const QString &text);
    /// What the four boxes say: buffer size, USB latency, sample rate, safe mode.
    QStringList texts();

    static QString settingsFile() { return file().name(); }
    /// The settings file as it is on disk: "section/name=value", sorted.
    static QStringList saved() { return file().entries(); }
    /// Writes it; entries as above. To be called before the dialog is constructed.
    static void writeSettings(const QStringList &entries) { QVERIFY(file().write(entries)); }

    /// Runs the event loop until no OTG cycle of the dialog is under way.
    void finishOtgCycles();
    /// Runs the event loop until everything due within that time has run.
    static void passTime(int milliseconds);

protected slots:
    void init();
    void cleanup();

private:
    static IniFile file() { return iniFile("setting.ini"); }

    std::unique_ptr<Settings> m_dialog;
};

#endif
