#ifndef ASIOPIPE_H
#define ASIOPIPE_H

#include <windows.h>

#include <QByteArrayList>

/// The ASIO driver's pipe, VESMORA_RESET_PIPE, on which it awaits the reset signal.
class AsioPipe
{
public:
    /// Fatal when the pipe cannot be created.
    AsioPipe();
    ~AsioPipe();
    AsioPipe(const AsioPipe &) = delete;
    AsioPipe &operator=(const AsioPipe &) = delete;

    /// The messages of the client that has connected, up to its end; then lets it go. A client that
    /// does not end them by leaving is one message "error" and the number more.
    QByteArrayList takeMessages();
    /// Throws the client out.
    void disconnect();

private:
    HANDLE m_pipe;
};

#endif
