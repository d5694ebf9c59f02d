#ifndef SIMULATORCONTROL_H
#define SIMULATORCONTROL_H

#include "childprocess.h"

#include <QJsonObject>
#include <QList>
#include <QStringList>

#include <functional>

/// One thing that the simulated interface saw, in its own decoded form.
class RecordEntry
{
public:
    explicit RecordEntry(const QJsonObject &object);

    /// One line that says it all, for example "setOutVolume 1 100".
    QString text() const;
    /// "open", "close", "request", "plug" or "unplug".
    QString kind() const;
    /// The command's name, for example "setOutVolume"; empty for other kinds.
    QString command() const;
    /// Which of the driver's open handles it came through.
    int handle() const;
    /// The whole input of a packet or a value.
    QByteArray bytes() const;
    const QJsonObject &json() const { return m_object; }

private:
    QJsonObject m_object;
};

/// Drives the simulated interface through its command-line program.
class SimulatorControl
{
public:
    using Run = std::function<CommandResult(const QStringList &)>;

    explicit SimulatorControl(Run run);

    /// @p model is a name that the simulator knows, e.g. "rx1", or a product identifier.
    bool plug(const QString &model, int bus = 0);
    bool unplug();
    /// A sane interface, nothing plugged, an empty record.
    bool reset();
    bool clearRecord();
    /// Lets the next @p count requests of @p command fail; 0 stands for all.
    bool fail(const QString &command, int count);
    bool clearFaults();
    /// The signed peak values at the beginning of the meter record; later ones stay as they are.
    bool setLevels(const QList<qint32> &levels);
    /// @p name is "rate", "buffer" or "latency".
    bool setValue(const QString &name, int value);
    bool setFirmware(const QString &version);

    QList<RecordEntry> record();
    /// The record as the program prints it, one JSON object a line.
    QByteArray recordLines();
    /// Why the last operation returned false or nothing.
    QString errorString() const { return m_error; }

private:
    bool run(const QStringList &arguments, QByteArray *output = nullptr);

    Run m_run;
    QString m_error;
};

#endif
