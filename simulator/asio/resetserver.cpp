#include "resetserver.h"

#include "vesmorapipes.h"

bool ResetServer::fail(const char *call, DWORD error)
{
    m_errorString = QStringLiteral("%1 failed: error %2").arg(QLatin1String(call)).arg(error);
    return false;
}

bool ResetServer::listen()
{
    m_next = PipeHandle(CreateNamedPipeW(VESMORA_RESET_PIPE, PIPE_ACCESS_DUPLEX,
                                         PIPE_TYPE_MESSAGE | PIPE_READMODE_MESSAGE | PIPE_WAIT,
                                         PIPE_UNLIMITED_INSTANCES, VESMORA_PIPE_BUFFER_SIZE,
                                         VESMORA_PIPE_BUFFER_SIZE, 0, nullptr));
    return m_next || fail("CreateNamedPipeW", GetLastError());
}

bool ResetServer::serve(const std::function<void(const QByteArray &)> &received)
{
    bool isConnected = ConnectNamedPipe(m_next.get(), nullptr) != FALSE;
    const DWORD error = isConnected ? 0 : GetLastError();
    // Connected already, or connected and gone again, maybe leaving a message.
    isConnected = isConnected || error == ERROR_PIPE_CONNECTED || error == ERROR_NO_DATA;
    if (!isConnected)
        return fail("ConnectNamedPipe", error);
    const PipeHandle client = std::move(m_next);
    return listen() && readAll(client.get(), received);
}

bool ResetServer::readAll(HANDLE pipe, const std::function<void(const QByteArray &)> &received)
{
    QByteArray message;
    QByteArray part(VESMORA_PIPE_BUFFER_SIZE, Qt::Uninitialized);
    for (;;) {
        DWORD length = 0;
        const bool isRead =
            ReadFile(pipe, part.data(), VESMORA_PIPE_BUFFER_SIZE, &length, nullptr) != FALSE;
        const DWORD error = isRead ? 0 : GetLastError();
        if (!isRead && error != ERROR_MORE_DATA)
            return error == ERROR_BROKEN_PIPE || fail("ReadFile", error);
        message.append(part.constData(), static_cast<qsizetype>(length));
        if (isRead)
            received(std::exchange(message, {}));
    }
}
