#include "vaincancel.h"

#include <windows.h>

#include <atomic>

namespace {

std::atomic<int> calls = 0;

} // namespace

// The linker renames: a call of the function goes to __wrap_.
extern "C" {

decltype(CancelIoEx) __wrap_CancelIoEx;

BOOL __wrap_CancelIoEx(HANDLE, LPOVERLAPPED)
{
    ++calls;
    return TRUE;
}
}

int vaincancel::count()
{
    return calls;
}
