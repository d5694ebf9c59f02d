#ifndef OBSERVED_H
#define OBSERVED_H

#include "inifile.h"
#include "logcapture.h"
#include "testsimulator.h"

#include <QTemporaryDir>

#include <memory>

/// What a test watches of a part of the product that runs in the test's own process: what reaches
/// the simulated interface, what goes to the log, and the INI files. A fixture's base.
class Observed
{
public:
    enum class Device { Simulated, None };
    /// Without a device there is no simulator; what is called a pipe or a device is this test's
    /// own.
    explicit Observed(Device device = Device::Simulated);
    ~Observed();

    /// Milliseconds until what comes by itself must have come.
    static constexpr int patience = 30000;

    /// Begins anew: a sane interface with nothing plugged in, an empty record and data folder, and
    /// a log of which nothing has been taken.
    void observe();
    /// Leaves the log to the test program and the data folder empty.
    void stopObserving();

    TestSimulator &simulator() { return *m_simulator; }
    /// Plugs in that model; nothing of it stays in the record.
    void plug(quint32 model);
    void unplug();
    /// The handles that the product has open.
    quint32 openHandles();

    /// What reached the device since the last call, without opens, closes and meter reads.
    QStringList takeSent();
    /// With them.
    QStringList takeEvents();
    /// With all there is to know.
    QList<Record> takeRecord();

    /// The log since the last takeLog(), which is kept; addresses are written as "(address)".
    QStringList log() const;
    /// The log since the last call.
    QStringList takeLog();
    bool hasLogged(const QString &line) const { return m_log->contains(line); }

    /// The product's data folder, which is the test program's own.
    static QString dataFolder();
    static void emptyDataFolder();
    /// An INI file there, called with its extension.
    static IniFile iniFile(const QString &name);

private:
    QTemporaryDir m_deviceFolder;
    std::unique_ptr<TestSimulator> m_simulator;
    std::unique_ptr<LogCapture> m_log;
};

#endif
