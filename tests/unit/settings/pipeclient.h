#ifndef PIPECLIENT_H
#define PIPECLIENT_H

#include "vesmorapipes.h"

#include <windows.h>

#include <QByteArray>
#include <QString>

#include <initializer_list>

/// The name of the pipe on which the settings dialog listens.
inline const QString listenerPipe = QString::fromWCharArray(VESMORA_WINDOW_PIPE);

/// The ASIO driver's end of a pipe that the program serves. Any thread, one at a time.
class PipeClient
{
public:
    explicit PipeClient(const QString &name = listenerPipe)
        : m_name(name)
    { }
    ~PipeClient() { close(); }
    PipeClient(const PipeClient &) = delete;
    PipeClient &operator=(const PipeClient &) = delete;

    /// One attempt; the Win32 error, 0 when it worked.
    DWORD open();
    /// Attempts until the server is there and free, or false after a long time.
    bool connect();
    /// Writes one message.
    bool write(const QByteArray &message);
    /// Waits until the server has let it go. What a client writes that leaves before the server has
    /// come to wait for it is lost, and nothing tells a client when that is.
    void awaitDisconnection();
    void close();

private:
    const QString m_name;
    HANDLE m_pipe = INVALID_HANDLE_VALUE;
};

/// Connects to the settings dialog, writes @p message and stays until it was received. Returns
/// whether that worked.
bool sendToListener(const QByteArray &message);

/// The bytes of 32-bit little-endian words.
QByteArray messageOf(std::initializer_list<quint32> words);

#endif
