#ifndef PIPESERVER_H
#define PIPESERVER_H

#include <QString>

#include <windows.h>

#include <array>

/// One instance of a message-type named pipe that serves one client at a time.
///
/// create() and close() belong to the owning thread and receive() to the listening one; close()
/// must not be called while receive() may run. cancel() may be called from any thread in between.
/// Failures go to the debug log with their Win32 error number.
class PipeServer
{
public:
    using Message = std::array<char, 1024>;

    /// @p name is the full pipe name, "\\.\pipe\...".
    explicit PipeServer(const QString &name);

    /// Creates the pipe, to which clients can connect from now on. Returns false when Windows
    /// refuses; every receive() then fails.
    bool create();

    /// Waits for a client, copies its first message to the beginning of @p message and disconnects
    /// it. Returns false when there was no client or no message of at most 1024 bytes.
    bool receive(Message &message);

    /// Fails the receive() under way, if any, with ERROR_OPERATION_ABORTED.
    void cancel();

    /// Disconnects the client, if any, and removes the pipe. Does nothing without one.
    void close();

private:
    bool waitForClient();
    bool readMessage(Message &message);

    const QString m_name;
    HANDLE m_pipe = INVALID_HANDLE_VALUE;
};

#endif
