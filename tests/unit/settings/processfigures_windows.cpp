#include "processfigures.h"

#include <windows.h>

#include <psapi.h>

int openHandleCount()
{
    DWORD count = 0;
    GetProcessHandleCount(GetCurrentProcess(), &count);
    return static_cast<int>(count);
}

qint64 residentBytes()
{
    PROCESS_MEMORY_COUNTERS counters{};
    if (!K32GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters))
        return 0;
    return static_cast<qint64>(counters.WorkingSetSize);
}
