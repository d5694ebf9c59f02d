#include "clock.h"

#include <windows.h>

namespace {

/// Windows counts in units of 100 ns.
double microseconds(const FILETIME &time)
{
    const ULARGE_INTEGER units{{time.dwLowDateTime, time.dwHighDateTime}};
    return static_cast<double>(units.QuadPart) / 10;
}

} // namespace

// Of whatever unit, it advances by ticks of 10 to 16 ms.
const double processorTimeGrain = 150000;

double processorTime()
{
    FILETIME creation{};
    FILETIME exit{};
    FILETIME kernel{};
    FILETIME user{};
    GetProcessTimes(GetCurrentProcess(), &creation, &exit, &kernel, &user);
    return microseconds(kernel) + microseconds(user);
}
