#ifndef RESETSERVER_H
#define RESETSERVER_H

#include "pipehandle.h"

#include <QByteArray>
#include <QString>

#include <functional>

/// The pipe on which the ASIO driver learns that the engine's settings changed.
class ResetServer
{
public:
    /// From here on clients can connect; false with an errorString() when that does not work.
    bool listen();
    /// Serves one client until it is gone; @p received gets every message. The next client can
    /// connect meanwhile.
    bool serve(const std::function<void(const QByteArray &message)> &received);

    QString errorString() const { return m_errorString; }

private:
    bool fail(const char *call, DWORD error);
    bool readAll(HANDLE pipe, const std::function<void(const QByteArray &)> &received);

    PipeHandle m_next;
    QString m_errorString;
};

#endif
