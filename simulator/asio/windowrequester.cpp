#include "windowrequester.h"

#include "vesmorapipes.h"

#include <QDeadlineTimer>

namespace {

constexpr int patience = 10000;  // milliseconds
constexpr DWORD retryPause = 10; // milliseconds

} // namespace

bool WindowRequester::fail(const char *call, DWORD error)
{
    m_errorString = QStringLiteral("%1 failed: error %2").arg(QLatin1String(call)).arg(error);
    return false;
}

bool WindowRequester::connect()
{
    const QDeadlineTimer deadline(patience);
    for (;;) {
        m_pipe = PipeHandle(CreateFileW(VESMORA_WINDOW_PIPE, GENERIC_READ | GENERIC_WRITE, 0,
                                        nullptr, OPEN_EXISTING, 0, nullptr));
        if (m_pipe)
            return true;
        const DWORD error = GetLastError();
        if (error != ERROR_PIPE_BUSY || deadline.hasExpired())
            return fail("CreateFileW", error);
        Sleep(retryPause);
    }
}

bool WindowRequester::send(const QByteArray &message)
{
    DWORD written = 0;
    if (!WriteFile(m_pipe.get(), message.constData(), static_cast<DWORD>(message.size()), &written,
                   nullptr))
        return fail("WriteFile", GetLastError());
    if (written != static_cast<DWORD>(message.size())) {
        m_errorString = QStringLiteral("only %1 bytes were written").arg(written);
        return false;
    }
    return true;
}

void WindowRequester::hang()
{
    char byte = 0;
    DWORD length = 0;
    while (ReadFile(m_pipe.get(), &byte, sizeof byte, &length, nullptr)) { }
}

void WindowRequester::disconnect()
{
    m_pipe = PipeHandle();
}
