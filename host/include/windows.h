/*
 * The part of the Win32 interface that the control panel and its tests use, for Linux. Names,
 * values and meanings are those of Windows; docs of the calls are Microsoft's. What is not here is
 * not used.
 *
 * Device paths "\\.\Name" and pipe names "\\.\pipe\Name" live in a private folder: VESMORA_HOST_DIR
 * if that environment variable is set, else vesmora in XDG_RUNTIME_DIR, else /tmp/vesmora-<uid>.
 *
 * As on Windows, calls on one synchronous handle take turns: while a thread waits in
 * ConnectNamedPipe or ReadFile, DisconnectNamedPipe and CloseHandle on that handle wait too. Only
 * CancelIoEx and CancelSynchronousIo do not.
 */
#ifndef VESMORA_HOST_WINDOWS_H
#define VESMORA_HOST_WINDOWS_H

#include <stddef.h>
#include <stdint.h>

#define WINAPI

#ifdef __cplusplus
extern "C" {
#endif

typedef int BOOL;
typedef int INT;
typedef uint32_t DWORD;
typedef DWORD *LPDWORD;
typedef void *HANDLE;
typedef void *LPVOID;
typedef const void *LPCVOID;
typedef const char *LPCSTR;
typedef const wchar_t *LPCWSTR;
typedef struct HostWindow *HWND;
typedef struct HostInstance *HINSTANCE;
/* Never completed, so that only null can be passed: security is the folder's, I/O is synchronous.
 */
typedef struct SECURITY_ATTRIBUTES *LPSECURITY_ATTRIBUTES;
typedef struct OVERLAPPED *LPOVERLAPPED;

#define FALSE 0
#define TRUE 1

#define INVALID_HANDLE_VALUE ((HANDLE)(intptr_t)-1)

#define GENERIC_READ 0x80000000u
#define GENERIC_WRITE 0x40000000u
#define FILE_SHARE_READ 0x00000001u
#define FILE_SHARE_WRITE 0x00000002u
#define OPEN_EXISTING 3u
#define FILE_ATTRIBUTE_NORMAL 0x00000080u
#define FILE_FLAG_OVERLAPPED 0x40000000u

#define SYNCHRONIZE 0x00100000u
#define THREAD_TERMINATE 0x00000001u

#define PIPE_ACCESS_DUPLEX 0x00000003u
#define PIPE_WAIT 0x00000000u
#define PIPE_READMODE_MESSAGE 0x00000002u
#define PIPE_TYPE_MESSAGE 0x00000004u
#define PIPE_UNLIMITED_INSTANCES 255u

#define SW_SHOWNORMAL 1

#define ERROR_SUCCESS 0u
#define ERROR_INVALID_FUNCTION 1u
#define ERROR_FILE_NOT_FOUND 2u
#define ERROR_PATH_NOT_FOUND 3u
#define ERROR_ACCESS_DENIED 5u
#define ERROR_INVALID_HANDLE 6u
#define ERROR_NOT_ENOUGH_MEMORY 8u
#define ERROR_GEN_FAILURE 31u
#define ERROR_NOT_SUPPORTED 50u
#define ERROR_INVALID_PARAMETER 87u
#define ERROR_BROKEN_PIPE 109u
#define ERROR_INVALID_NAME 123u
#define ERROR_FILENAME_EXCED_RANGE 206u
#define ERROR_PIPE_BUSY 231u
#define ERROR_NO_DATA 232u
#define ERROR_PIPE_NOT_CONNECTED 233u
#define ERROR_MORE_DATA 234u
#define ERROR_PIPE_CONNECTED 535u
#define ERROR_PIPE_LISTENING 536u
#define ERROR_OPERATION_ABORTED 995u
#define ERROR_NOACCESS 998u
#define ERROR_IO_DEVICE 1117u
#define ERROR_DEVICE_NOT_CONNECTED 1167u
#define ERROR_NOT_FOUND 1168u
#define ERROR_NOT_ENOUGH_QUOTA 1816u

#define SE_ERR_FNF 2
#define SE_ERR_PNF 3
#define SE_ERR_ACCESSDENIED 5
#define SE_ERR_OOM 8
#define SE_ERR_NOASSOC 31

DWORD WINAPI GetLastError(void);
void WINAPI SetLastError(DWORD dwErrCode);

HANDLE WINAPI CreateFileW(LPCWSTR lpFileName, DWORD dwDesiredAccess, DWORD dwShareMode,
                          LPSECURITY_ATTRIBUTES lpSecurityAttributes, DWORD dwCreationDisposition,
                          DWORD dwFlagsAndAttributes, HANDLE hTemplateFile);
BOOL WINAPI ReadFile(HANDLE hFile, LPVOID lpBuffer, DWORD nNumberOfBytesToRead,
                     LPDWORD lpNumberOfBytesRead, LPOVERLAPPED lpOverlapped);
BOOL WINAPI WriteFile(HANDLE hFile, LPCVOID lpBuffer, DWORD nNumberOfBytesToWrite,
                      LPDWORD lpNumberOfBytesWritten, LPOVERLAPPED lpOverlapped);
BOOL WINAPI DeviceIoControl(HANDLE hDevice, DWORD dwIoControlCode, LPVOID lpInBuffer,
                            DWORD nInBufferSize, LPVOID lpOutBuffer, DWORD nOutBufferSize,
                            LPDWORD lpBytesReturned, LPOVERLAPPED lpOverlapped);
BOOL WINAPI CancelIoEx(HANDLE hFile, LPOVERLAPPED lpOverlapped);
BOOL WINAPI CloseHandle(HANDLE hObject);

HANDLE WINAPI CreateNamedPipeW(LPCWSTR lpName, DWORD dwOpenMode, DWORD dwPipeMode,
                               DWORD nMaxInstances, DWORD nOutBufferSize, DWORD nInBufferSize,
                               DWORD nDefaultTimeOut, LPSECURITY_ATTRIBUTES lpSecurityAttributes);
BOOL WINAPI ConnectNamedPipe(HANDLE hNamedPipe, LPOVERLAPPED lpOverlapped);
BOOL WINAPI DisconnectNamedPipe(HANDLE hNamedPipe);

DWORD WINAPI GetCurrentThreadId(void);
HANDLE WINAPI OpenThread(DWORD dwDesiredAccess, BOOL bInheritHandle, DWORD dwThreadId);
/* The right it takes is THREAD_TERMINATE. */
BOOL WINAPI CancelSynchronousIo(HANDLE hThread);

/* Milliseconds. */
void WINAPI Sleep(DWORD dwMilliseconds);

/* More than 32 on success, else one of the SE_ERR_ numbers. The parameters are split at spaces. */
HINSTANCE WINAPI ShellExecuteA(HWND hwnd, LPCSTR lpOperation, LPCSTR lpFile, LPCSTR lpParameters,
                               LPCSTR lpDirectory, INT nShowCmd);

#ifdef __cplusplus
}
#endif

#endif
