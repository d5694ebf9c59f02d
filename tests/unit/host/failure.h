#ifndef FAILURE_H
#define FAILURE_H

#include <windows.h>

/// The error that a call left which had this result; ERROR_SUCCESS when it did not fail.
inline DWORD failureOf(BOOL result)
{
    return result ? ERROR_SUCCESS : GetLastError();
}

inline DWORD failureOf(HANDLE handle)
{
    return failureOf(handle != INVALID_HANDLE_VALUE ? TRUE : FALSE);
}

#endif
