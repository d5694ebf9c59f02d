#include "pipeserver.h"

#include <QDebug>

#include <algorithm>

namespace {

constexpr DWORD pipeBufferSize = 65536; // bytes, each way
constexpr DWORD defaultTimeout = 300;   // milliseconds

} // namespace

PipeServer::PipeServer(const QString &name)
    : m_name(name)
{ }

bool PipeServer::create()
{
    const std::wstring name = m_name.toStdWString();
    m_pipe = CreateNamedPipeW(
        name.c_str(), PIPE_ACCESS_DUPLEX, PIPE_TYPE_MESSAGE | PIPE_READMODE_MESSAGE | PIPE_WAIT,
        PIPE_UNLIMITED_INSTANCES, pipeBufferSize, pipeBufferSize, defaultTimeout, nullptr);
    if (m_pipe == INVALID_HANDLE_VALUE) {
        const DWORD error = GetLastError();
        qDebug() << "Error: Could not create pipe. Error code:" << error;
        return false;
    }
    qDebug() << "Pipe created successfully.";
    return true;
}

bool PipeServer::receive(Message &message)
{
    if (!waitForClient())
        return false;
    const bool received = readMessage(message);
    DisconnectNamedPipe(m_pipe);
    return received;
}

bool PipeServer::waitForClient()
{
    if (ConnectNamedPipe(m_pipe, nullptr))
        return true;
    const DWORD error = GetLastError();
    // The client was faster, which is as good.
    if (error == ERROR_PIPE_CONNECTED)
        return true;
    qDebug() << "Error connecting to pipe. Error code:" << error;
    // A client that came and went would fail every attempt from now on.
    if (error == ERROR_NO_DATA)
        DisconnectNamedPipe(m_pipe);
    return false;
}

bool PipeServer::readMessage(Message &message)
{
    Message buffer;
    DWORD length = 0;
    if (!ReadFile(m_pipe, buffer.data(), static_cast<DWORD>(buffer.size()), &length, nullptr)) {
        const DWORD error = GetLastError();
        qDebug() << "Error reading from pipe. Error code:" << error;
        return false;
    }
    std::copy_n(buffer.begin(), length, message.begin());
    return true;
}

void PipeServer::cancel()
{
    if (m_pipe != INVALID_HANDLE_VALUE)
        CancelIoEx(m_pipe, nullptr);
}

void PipeServer::close()
{
    if (m_pipe == INVALID_HANDLE_VALUE)
        return;
    DisconnectNamedPipe(m_pipe);
    CloseHandle(m_pipe);
    m_pipe = INVALID_HANDLE_VALUE;
    qDebug() << "Pipe closed.";
}
