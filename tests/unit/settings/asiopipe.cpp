#include "asiopipe.h"

#include "vesmorapipes.h"

#include <QtGlobal>

AsioPipe::AsioPipe()
    : m_pipe(CreateNamedPipeW(VESMORA_RESET_PIPE, PIPE_ACCESS_DUPLEX,
                              PIPE_TYPE_MESSAGE | PIPE_READMODE_MESSAGE | PIPE_WAIT, 1,
                              VESMORA_PIPE_BUFFER_SIZE, VESMORA_PIPE_BUFFER_SIZE,
                              VESMORA_PIPE_TIMEOUT, nullptr))
{
    if (m_pipe == INVALID_HANDLE_VALUE)
        qFatal("No pipe for the ASIO driver: error %u", unsigned(GetLastError()));
}

AsioPipe::~AsioPipe()
{
    CloseHandle(m_pipe);
}

QByteArrayList AsioPipe::takeMessages()
{
    QByteArrayList messages;
    char buffer[64];
    DWORD length = 0;
    while (ReadFile(m_pipe, buffer, sizeof buffer, &length, nullptr))
        messages << QByteArray(buffer, static_cast<qsizetype>(length));
    const DWORD error = GetLastError();
    if (error != ERROR_BROKEN_PIPE)
        messages << "error " + QByteArray::number(static_cast<uint>(error));
    disconnect();
    return messages;
}

void AsioPipe::disconnect()
{
    DisconnectNamedPipe(m_pipe);
}
