#ifndef SIMULATORCLIENT_H
#define SIMULATORCLIENT_H

#include "record.h"
#include "simulatorstate.h"

#include <windows.h>

#include <QList>
#include <QMap>
#include <QString>

/// Drives the simulated interface through its test-control device, from outside the program under
/// test. One thread at a time; nothing throws. What returns bool says whether it worked, and
/// errorString() why not.
class SimulatorClient
{
public:
    SimulatorClient() = default;
    ~SimulatorClient();
    SimulatorClient(const SimulatorClient &) = delete;
    SimulatorClient &operator=(const SimulatorClient &) = delete;

    /// Connects to the simulator; it has to be running. Also done by the first command.
    bool open();
    void close();

    /// @p identifier is a product identifier (VESMORA_PID_...). Fails when something is plugged in.
    bool plug(quint32 identifier, int bus = 0);
    bool unplug();
    /// Back to a sane device: nothing plugged in, record empty, no faults. Open handles stay open.
    bool reset();

    /// Levels by meter index, 0 to 191; the others stay.
    bool setMeters(const QMap<int, qint32> &levels);
    /// @p firmware is 10 bytes long.
    bool setFirmware(const QByteArray &firmware);
    /// Changes the answer to getDevicePid without unplugging.
    bool setIdentifier(quint32 identifier);
    bool setSampleRate(quint32 rate);    ///< Hz
    bool setBufferSize(quint32 samples); ///< samples
    bool setUsbLatency(quint32 frames);  ///< USB frames
    bool setValue(VesmoraSimValue which, quint32 value);

    /// Makes the @p nth request from now (1 is the next) that has this code, and opcode if one is
    /// given, fail with a Win32 error, and @p count - 1 more after it; 0 means for ever.
    bool fail(quint32 code, int nth, DWORD error, int count = 1, int opcode = -1);
    /// The same by the name of a VesmoraIoControl method, or "open".
    bool fail(const QString &command, int nth, DWORD error, int count = 1);
    /// Makes the device answer late, 0 to 60000 ms; it acts at once. 0 ends that.
    bool delay(quint32 code, int milliseconds, int opcode = -1);
    bool delay(const QString &command, int milliseconds);
    /// Ends all failures and delays.
    bool clearFaults();

    bool clearRecord();
    /// What happened since the record was cleared, in order, from entry number @p from on. When
    /// entries were lost for want of room, the last one is of Kind::Lost. Empty on failure.
    QList<Record> record(quint32 from = 1);
    /// A state with nothing plugged in on failure.
    SimulatorState state();
    /// The 8288 values of the block the device has now. Empty on failure.
    QList<double> mixerBlock();

    /// About the last call; empty when it worked.
    QString errorString() const { return m_errorString; }
    /// The Win32 error of the last call, 0 when it worked or did not get that far.
    DWORD error() const { return m_error; }

private:
    bool transact(const char *what, quint32 code, const void *input, qsizetype inputLength,
                  void *output = nullptr, qsizetype outputLength = 0, DWORD *returned = nullptr);
    bool command(const char *what, quint32 code);
    bool addFault(const VesmoraSimFault &fault);
    bool setDelay(const VesmoraSimDelay &delay);
    bool refuse(const QString &reason);

    HANDLE m_device = INVALID_HANDLE_VALUE;
    QString m_errorString;
    DWORD m_error = 0;
};

#endif
