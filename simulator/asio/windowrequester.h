#ifndef WINDOWREQUESTER_H
#define WINDOWREQUESTER_H

#include "pipehandle.h"

#include <QByteArray>
#include <QString>

/// The ASIO driver's end of the pipe on which it asks the control panel for its settings window.
class WindowRequester
{
public:
    /// Waits a few seconds for its turn when the panel serves somebody else; false with an
    /// errorString() when there is no panel or it stays busy.
    bool connect();
    /// One message. It arrives also when the connection is dropped right after.
    bool send(const QByteArray &message);
    /// Keeps the connection open without a word until the panel ends it.
    void hang();
    void disconnect();

    QString errorString() const { return m_errorString; }

private:
    bool fail(const char *call, DWORD error);

    PipeHandle m_pipe;
    QString m_errorString;
};

#endif
