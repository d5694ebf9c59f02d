#ifndef SETTINGSTEST_H
#define SETTINGSTEST_H

#include "logcapture.h"
#include "settings.h"
#include "testsimulator.h"

#include <QComboBox>
#include <QObject>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

/// A test of the settings dialog against the simulated interface.
///
/// Each test function begins with a sane interface that is not plugged in, an empty data folder and
/// no dialog; in the end the dialog is deleted.
class SettingsTest : public QObject
{
    Q_OBJECT

protected:
    static constexpr int patience = 20000; // milliseconds until a condition must have come true

    enum class Device { Simulated, None };
    /// Without a device there is no second process, only pipes within this one.
    explicit SettingsTest(Device device = Device::Simulated);

    TestSimulator &simulator() { return *m_simulator; }

    /// Plugs in a model; nothing of it stays in the record.
    void plug();
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

    /// The log since the last call; addresses are written as "(address)".
    QStringList takeLog();
    bool hasLogged(const QString &line) { return m_log->contains(line); }
    /// What reached the device since the last call.
    QStringList takeSent();
    /// With opens and closes.
    QStringList takeEvents();

    QString settingsFile() const;
    /// The settings file as it is on disk: "section/name=value", sorted.
    QStringList saved() const;
    /// Writes it; entries as above. To be called before the dialog is constructed.
    void writeSettings(const QStringList &entries);

    /// Runs the event loop until no OTG cycle of the dialog is under way.
    void finishOtgCycles();
    /// Runs the event loop until everything due within that time has run.
    static void passTime(int milliseconds);

protected slots:
    void init();
    void cleanup();

private:
    std::unique_ptr<TestSimulator> m_simulator;
    QTemporaryDir m_pipeFolder;
    QString m_folder;
    std::unique_ptr<LogCapture> m_log;
    std::unique_ptr<Settings> m_dialog;
};

#endif
