#include "pipeclient.h"

#include <QDeadlineTimer>
#include <QtEndian>

#include <thread>

namespace {

constexpr int patience = 30000; // milliseconds

} // namespace

DWORD PipeClient::open()
{
    m_pipe = CreateFileW(m_name.toStdWString().c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr,
                         OPEN_EXISTING, 0, nullptr);
    return m_pipe == INVALID_HANDLE_VALUE ? GetLastError() : ERROR_SUCCESS;
}

bool PipeClient::connect()
{
    const QDeadlineTimer deadline(patience);
    DWORD error = open();
    while ((error == ERROR_PIPE_BUSY || error == ERROR_FILE_NOT_FOUND) && !deadline.hasExpired()) {
        std::this_thread::yield();
        error = open();
    }
    return error == ERROR_SUCCESS;
}

bool PipeClient::write(const QByteArray &message)
{
    DWORD written = 0;
    return WriteFile(m_pipe, message.constData(), static_cast<DWORD>(message.size()), &written,
                     nullptr)
        && written == static_cast<DWORD>(message.size());
}

void PipeClient::awaitDisconnection()
{
    char answer = 0;
    DWORD length = 0;
    while (ReadFile(m_pipe, &answer, sizeof answer, &length, nullptr)) { }
}

void PipeClient::close()
{
    if (m_pipe != INVALID_HANDLE_VALUE)
        CloseHandle(m_pipe);
    m_pipe = INVALID_HANDLE_VALUE;
}

bool sendToListener(const QByteArray &message)
{
    PipeClient client;
    if (!client.connect() || !client.write(message))
        return false;
    client.awaitDisconnection();
    return true;
}

QByteArray messageOf(std::initializer_list<quint32> words)
{
    QByteArray bytes;
    for (const quint32 word : words) {
        const quint32 littleEndian = qToLittleEndian(word);
        bytes.append(reinterpret_cast<const char *>(&littleEndian), sizeof littleEndian);
    }
    return bytes;
}
