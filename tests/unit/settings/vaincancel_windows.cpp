#include "vaincancel.h"

#include <windows.h>

#include <atomic>

namespace {

std::atomic<int> calls = 0;

BOOL WINAPI cancelNothing(HANDLE, LPOVERLAPPED)
{
    ++calls;
    return TRUE;
}

} // namespace

// A function of a DLL is called through a pointer of this name, which the linker renames.
extern "C" {

extern const decltype(&CancelIoEx) __wrap___imp_CancelIoEx;
const decltype(&CancelIoEx) __wrap___imp_CancelIoEx = cancelNothing;
}

int vaincancel::count()
{
    return calls;
}
