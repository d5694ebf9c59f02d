#ifndef WIN32SPY_H
#define WIN32SPY_H

#include <windows.h>

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

/// One call of CreateFileW, DeviceIoControl or CloseHandle.
struct Win32Call {
    QString text;            ///< the function and its arguments; bytes and handle left out
    HANDLE handle = nullptr; ///< given, or returned by CreateFileW
    DWORD error = 0;         ///< 0 when it succeeded
    const void *input = nullptr;
    QByteArray inputBytes;
    const void *output = nullptr;
    QByteArray outputBefore; ///< what the output buffer held when the call was made
};

/// Writes down the calls that this program makes while it lives, on their way to the system, which
/// answers them as ever, unless it is told otherwise. One at a time. The simulator's client makes
/// such calls too: stop() first.
class Win32Spy
{
public:
    Win32Spy();
    ~Win32Spy();
    Win32Spy(const Win32Spy &) = delete;
    Win32Spy &operator=(const Win32Spy &) = delete;

    /// Has every CreateFileW return @p handle; the system is not asked.
    void answerOpens(HANDLE handle) { m_openAnswer = handle; }

    /// The calls so far. Later ones are not written down.
    QList<Win32Call> stop();

    /// What Win32Call::text is for the one way in which the product opens a path.
    static QString openText(const QString &path);
    /// The same for a command; a length of 0 stands for no buffer.
    static QString commandText(quint32 code, qsizetype inputLength, qsizetype outputLength);
    /// The same for CloseHandle.
    static QString closeText();

    // The system's own functions, to which the calls are passed on.
    using CreateFileFunction = decltype(&CreateFileW);
    using DeviceIoControlFunction = decltype(&DeviceIoControl);
    using CloseHandleFunction = decltype(&CloseHandle);

    static HANDLE createFile(CreateFileFunction real, LPCWSTR path, DWORD access, DWORD share,
                             LPSECURITY_ATTRIBUTES security, DWORD disposition, DWORD flags,
                             HANDLE templateFile);
    static BOOL deviceIoControl(DeviceIoControlFunction real, HANDLE device, DWORD code,
                                LPVOID input, DWORD inputLength, LPVOID output, DWORD outputLength,
                                LPDWORD returned, LPOVERLAPPED overlapped);
    static BOOL closeHandle(CloseHandleFunction real, HANDLE handle);

private:
    static void note(Win32Call call, bool succeeded);

    static Win32Spy *s_current;
    QList<Win32Call> m_calls;
    std::optional<HANDLE> m_openAnswer;
};

/// The texts of calls, in order.
QStringList textsOf(const QList<Win32Call> &calls);

#endif
