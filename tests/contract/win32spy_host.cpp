#include "win32spy.h"

// The linker renames: a call of a function goes to __wrap_, and __real_ is the function itself.
extern "C" {

decltype(CreateFileW) __real_CreateFileW;
decltype(CreateFileW) __wrap_CreateFileW;
decltype(DeviceIoControl) __real_DeviceIoControl;
decltype(DeviceIoControl) __wrap_DeviceIoControl;
decltype(CloseHandle) __real_CloseHandle;
decltype(CloseHandle) __wrap_CloseHandle;

HANDLE __wrap_CreateFileW(LPCWSTR path, DWORD access, DWORD share, LPSECURITY_ATTRIBUTES security,
                          DWORD disposition, DWORD flags, HANDLE templateFile)
{
    return Win32Spy::createFile(__real_CreateFileW, path, access, share, security, disposition,
                                flags, templateFile);
}

BOOL __wrap_DeviceIoControl(HANDLE device, DWORD code, LPVOID input, DWORD inputLength,
                            LPVOID output, DWORD outputLength, LPDWORD returned,
                            LPOVERLAPPED overlapped)
{
    return Win32Spy::deviceIoControl(__real_DeviceIoControl, device, code, input, inputLength,
                                     output, outputLength, returned, overlapped);
}

BOOL __wrap_CloseHandle(HANDLE handle)
{
    return Win32Spy::closeHandle(__real_CloseHandle, handle);
}
}
