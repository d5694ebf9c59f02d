#include "pipeserver.h"

#include <QDebug>

#include <algorithm>

PipeServer::PipeServer(const QString &name)
    : m_name(name)
{ }

bool PipeServer::create()
{
    const std::wstring name = m_name.toStdWString();
    m_pipe = CreateNamedPipeW(name.c_str(), PIPE_ACCESS_DUPLEX,
                              PIPE_TYPE_MESSAGE | PIPE_READMODE_MESSAGE | PIPE_WAIT,
                              PIPE_UNLIMITED_INSTANCES, VESMORA_PIPE_BUFFER_SIZE,
                              VESMORA_PIPE_BUFFER_SIZE, VESMORA_PIPE_TIMEOUT, nullptr);
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
    disconnect();
    return received;
}

bool PipeServer::waitForClient()
{
    m_abandoned = false;
    if (ConnectNamedPipe(m_pipe, nullptr))
        return true;
    const DWORD error = GetLastError();
    // The client was faster, which is as good.
    if (error == ERROR_PIPE_CONNECTED)
        return true;
    qDebug() << "Error connecting to pipe. Error code:" << error;
    m_abandoned = error == ERROR_NO_DATA;
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

void PipeServer::disconnect()
{
    DisconnectNamedPipe(m_pipe);
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
    disconnect();
    CloseHandle(m_pipe);
    m_pipe = INVALID_HANDLE_VALUE;
    qDebug() << "Pipe closed.";
}
