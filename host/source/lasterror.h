#ifndef LASTERROR_H
#define LASTERROR_H

#include <windows.h>

#include <cerrno>
#include <new>

/// The Win32 error that fits an errno best.
DWORD errorFromErrno(int number);

/// Runs @p body, which returns a Win32 error, and makes of it what every call shares: TRUE, or
/// FALSE and the thread's last error. Success leaves the last error as it was; exceptions and
/// changes of errno end here.
template <typename Body> BOOL reported(Body body) noexcept
{
    const int savedErrno = errno;
    DWORD error = ERROR_GEN_FAILURE;
    try {
        error = body();
    } catch (const std::bad_alloc &) {
        error = ERROR_NOT_ENOUGH_MEMORY;
    } catch (...) {
        error = ERROR_GEN_FAILURE;
    }
    errno = savedErrno;
    if (error != ERROR_SUCCESS)
        SetLastError(error);
    return error == ERROR_SUCCESS ? TRUE : FALSE;
}

#endif
