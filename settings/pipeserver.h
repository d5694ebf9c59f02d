#ifndef PIPESERVER_H
#define PIPESERVER_H

#include "vesmorapipes.h"

#include <QString>

#include <windows.h>

#include <array>

/// One instance of a message-type named pipe that serves one client at a time.
///
/// create() and close() belong to the owning thread, receive() and what is about its outcome to the
/// listening one; close() must not be called while receive() may run. cancel() may be called from
/// any thread in between.
/// Failures go to the debug log with their Win32 error number.
class PipeServer
{
public:
    using Message = std::array<char, VESMORA_PIPE_MESSAGE_LIMIT>;

    /// @p name is the full pipe name, "\\.\pipe\...".
    explicit PipeServer(const QString &name);

    /// Creates the pipe, to which clients can connect from now on. Returns false when Windows
    /// refuses; every receive() then fails.
    bool create();

    /// Waits for a client, copies its first message to the beginning of @p message and disconnects
    /// it. Returns false when no client came or its message could not be read: it may be too long.
    bool receive(Message &message);
    /// Whether the last receive() found that its client had been there and left. The pipe is that
    /// client's until disconnect(), and every receive() fails.
    bool wasAbandoned() const { return m_abandoned; }
    /// Lets go of the client, if any; the next one gets in with the next receive().
    void disconnect();

    /// Fails the receive() under way, if any, with ERROR_OPERATION_ABORTED.
    void cancel();

    /// Disconnects the client, if any, and removes the pipe. Does nothing without one.
    void close();

private:
    bool waitForClient();
    bool readMessage(Message &message);

    const QString m_name;
    HANDLE m_pipe = INVALID_HANDLE_VALUE;
    bool m_abandoned = false;
};

#endif
