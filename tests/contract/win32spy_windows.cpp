#include "win32spy.h"

namespace {

HANDLE WINAPI createFile(LPCWSTR path, DWORD access, DWORD share, LPSECURITY_ATTRIBUTES security,
                         DWORD disposition, DWORD flags, HANDLE templateFile);
BOOL WINAPI deviceIoControl(HANDLE device, DWORD code, LPVOID input, DWORD inputLength,
                            LPVOID output, DWORD outputLength, LPDWORD returned,
                            LPOVERLAPPED overlapped);
BOOL WINAPI closeHandle(HANDLE handle);

} // namespace

// The functions of a DLL are called through pointers of these names, which the linker renames: a
// caller uses the __wrap_ one, and __real_ is the DLL's.
extern "C" {

extern const Win32Spy::CreateFileFunction __real___imp_CreateFileW;
extern const Win32Spy::CreateFileFunction __wrap___imp_CreateFileW;
extern const Win32Spy::DeviceIoControlFunction __real___imp_DeviceIoControl;
extern const Win32Spy::DeviceIoControlFunction __wrap___imp_DeviceIoControl;
extern const Win32Spy::CloseHandleFunction __real___imp_CloseHandle;
extern const Win32Spy::CloseHandleFunction __wrap___imp_CloseHandle;

const Win32Spy::CreateFileFunction __wrap___imp_CreateFileW = createFile;
const Win32Spy::DeviceIoControlFunction __wrap___imp_DeviceIoControl = deviceIoControl;
const Win32Spy::CloseHandleFunction __wrap___imp_CloseHandle = closeHandle;
}

namespace {

HANDLE WINAPI createFile(LPCWSTR path, DWORD access, DWORD share, LPSECURITY_ATTRIBUTES security,
                         DWORD disposition, DWORD flags, HANDLE templateFile)
{
    return Win32Spy::createFile(__real___imp_CreateFileW, path, access, share, security,
                                disposition, flags, templateFile);
}

BOOL WINAPI deviceIoControl(HANDLE device, DWORD code, LPVOID input, DWORD inputLength,
                            LPVOID output, DWORD outputLength, LPDWORD returned,
                            LPOVERLAPPED overlapped)
{
    return Win32Spy::deviceIoControl(__real___imp_DeviceIoControl, device, code, input, inputLength,
                                     output, outputLength, returned, overlapped);
}

BOOL WINAPI closeHandle(HANDLE handle)
{
    return Win32Spy::closeHandle(__real___imp_CloseHandle, handle);
}

} // namespace
