#include "processfigures.h"

#include <windows.h>

#include <psapi.h>

namespace {

constexpr quintptr highestHandle = 0x8000;

} // namespace

int openHandleCount()
{
    // Asked one by one, because Wine does not keep count.
    int count = 0;
    for (quintptr value = 4; value < highestHandle; value += 4) {
        DWORD flags = 0;
        count += GetHandleInformation(reinterpret_cast<HANDLE>(value), &flags) ? 1 : 0;
    }
    return count;
}

qint64 residentBytes()
{
    PROCESS_MEMORY_COUNTERS counters{};
    if (!K32GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters))
        return 0;
    return static_cast<qint64>(counters.WorkingSetSize);
}
