#ifndef PANELFIXTURE_H
#define PANELFIXTURE_H

#include "button.h"
#include "knob.h"
#include "logcapture.h"
#include "panelmodel.h"
#include "testsimulator.h"

#include <QMap>
#include <QObject>
#include <QTest>
#include <QWidget>

#include <memory>

/// A test of panels against the simulated interface.
///
/// Each test function begins with the model plugged in, its record and the data folder empty and no
/// panel; in the end the panel is deleted and must have closed what it opened.
class PanelFixture : public QObject
{
    Q_OBJECT

protected:
    explicit PanelFixture(PanelModel model);

    TestSimulator &simulator() { return m_simulator; }
    PanelModel model() const { return m_model; }

    /// Begins anew with @p model, as a test function does.
    void begin(PanelModel model);
    /// Adds a column "model" and a row for each.
    static void addModelRows();

    /// Constructs the model's panel.
    void build();
    /// Does so and forgets what it sent and logged meanwhile.
    void buildQuietly();
    QWidget &panel() { return *m_panel; }
    void deletePanel() { m_panel.reset(); }
    /// For who wants to delete it in another way.
    QWidget *releasePanel() { return m_panel.release(); }

    /// Fatal when there is no such control.
    Knob &knob(const QString &name);
    Button &button(const QString &name);
    /// Presses and releases the left mouse button.
    void click(const QString &name);
    /// Turns the wheel over a knob by @p notches, up when positive.
    void turn(const QString &name, int notches);
    /// Lets the meter timer fire once.
    void tick();
    /// The meters' texts from left to right, top to bottom.
    QStringList meterTexts();

    /// What reached the device since the last call, without meter reads.
    QStringList takeSent();
    /// With opens, closes and meter reads.
    QStringList takeEvents();
    /// The bytes of the packets among it.
    QList<QByteArray> takePackets();
    /// The log since the last takeLog(), which is kept.
    QStringList log() const { return m_log->lines(); }
    /// The log since the last call.

    QStringList takeLog() { return m_log->take(); }

    QString settingsFile() const;
    /// The lines of the settings file as it is on disk.
    QStringList savedLines() const { return iniLines(settingsFile()); }
    /// Its values by "section/name".
    QMap<QString, QString> saved() const;
    void writeSettings(const QByteArray &text);

private slots:
    void init();
    void cleanup();

private:
    const PanelModel m_initialModel;
    PanelModel m_model;
    TestSimulator m_simulator;
    QString m_folder;
    std::unique_ptr<LogCapture> m_log;
    std::unique_ptr<QWidget> m_panel;
};

/// A whole packet that begins with these bytes and is zero from there on.
QByteArray packet(const char *hexBegin);

/// @p line twice: what a click does, as both its emissions are acted on.
QStringList twice(const QString &line);

QStringList twice(const QStringList &lines);

#endif
