#include "win32spy.h"

namespace {

QString hex(quint32 number)
{
    return QString::number(number, 16).toUpper();
}

QString presence(const void *pointer)
{
    return pointer ? "given" : "null";
}

QString bufferText(const void *buffer, qsizetype length)
{
    if (!buffer && length == 0)
        return "none";
    return buffer ? QString("%1 bytes").arg(length) : QString("null of %1 bytes").arg(length);
}

QString openText(const QString &path, DWORD access, DWORD share, const void *security,
                 DWORD disposition, DWORD flags, const void *templateFile)
{
    return QString("CreateFileW %1 access=%2 share=%3 security=%4 disposition=%5 flags=%6 "
                   "template=%7")
        .arg(path, hex(quint32(access)), hex(quint32(share)), presence(security),
             hex(quint32(disposition)), hex(quint32(flags)), presence(templateFile));
}

QString commandText(quint32 code, const QString &input, const QString &output,
                    const QString &returned, const void *overlapped)
{
    return QString("DeviceIoControl %1 in=%2 out=%3 returned=%4 overlapped=%5")
        .arg(hex(code), input, output, returned, presence(overlapped));
}

QByteArray bytesOf(const void *buffer, qsizetype length)
{
    return buffer ? QByteArray(static_cast<const char *>(buffer), length) : QByteArray();
}

} // namespace

Win32Spy *Win32Spy::s_current = nullptr;

Win32Spy::Win32Spy()
{
    Q_ASSERT(!s_current);
    s_current = this;
}

Win32Spy::~Win32Spy()
{
    stop();
}

QList<Win32Call> Win32Spy::stop()
{
    if (s_current == this)
        s_current = nullptr;
    return m_calls;
}

QString Win32Spy::openText(const QString &path)
{
    return ::openText(path, 0xC0000000, 3, nullptr, 3, 0, nullptr);
}

QString Win32Spy::commandText(quint32 code, qsizetype inputLength, qsizetype outputLength)
{
    const auto buffer = [](qsizetype length) {
        return length == 0 ? "none" : QString("%1 bytes").arg(length);
    };
    return ::commandText(code, buffer(inputLength), buffer(outputLength), "0", nullptr);
}

QString Win32Spy::closeText()
{
    return "CloseHandle";
}

void Win32Spy::note(Win32Call call, bool succeeded)
{
    if (!s_current)
        return;
    const DWORD error = GetLastError();
    call.error = succeeded ? 0 : error;
    s_current->m_calls.append(call);
    // Writing it down may have changed it, and the caller is about to ask for it.
    SetLastError(error);
}

HANDLE Win32Spy::createFile(CreateFileFunction real, LPCWSTR path, DWORD access, DWORD share,
                            LPSECURITY_ATTRIBUTES security, DWORD disposition, DWORD flags,
                            HANDLE templateFile)
{
    Win32Call call;
    call.text = ::openText(QString::fromWCharArray(path), access, share, security, disposition,
                           flags, templateFile);
    call.handle = s_current && s_current->m_openAnswer
        ? *s_current->m_openAnswer
        : real(path, access, share, security, disposition, flags, templateFile);
    note(call, call.handle != INVALID_HANDLE_VALUE);
    return call.handle;
}

BOOL Win32Spy::deviceIoControl(DeviceIoControlFunction real, HANDLE device, DWORD code,
                               LPVOID input, DWORD inputLength, LPVOID output, DWORD outputLength,
                               LPDWORD returned, LPOVERLAPPED overlapped)
{
    Win32Call call;
    call.text = ::commandText(quint32(code), bufferText(input, qsizetype(inputLength)),
                              bufferText(output, qsizetype(outputLength)),
                              returned ? QString::number(*returned) : "null", overlapped);
    call.handle = device;
    call.input = input;
    call.inputBytes = bytesOf(input, qsizetype(inputLength));
    call.output = output;
    call.outputBefore = bytesOf(output, qsizetype(outputLength));
    const BOOL done =
        real(device, code, input, inputLength, output, outputLength, returned, overlapped);
    note(call, done != FALSE);
    return done;
}

BOOL Win32Spy::closeHandle(CloseHandleFunction real, HANDLE handle)
{
    Win32Call call;
    call.text = closeText();
    call.handle = handle;
    const BOOL done = real(handle);
    note(call, done != FALSE);
    return done;
}

QStringList textsOf(const QList<Win32Call> &calls)
{
    QStringList texts;
    for (const Win32Call &call : calls)
        texts.append(call.text);
    return texts;
}
