#ifndef DEVICEHANDLE_H
#define DEVICEHANDLE_H

#include "vesmoraiocontrol.h"

#include <cstring>
#include <type_traits>

// The handle is all that a connection holds, so that it can be read and replaced from outside.
static_assert(sizeof(VesmoraIoControl) == sizeof(HANDLE));
static_assert(std::is_standard_layout_v<VesmoraIoControl>);

inline HANDLE handleOf(const VesmoraIoControl &device)
{
    HANDLE handle;
    std::memcpy(&handle, &device, sizeof handle);
    return handle;
}

inline void setHandle(VesmoraIoControl &device, HANDLE handle)
{
    std::memcpy(static_cast<void *>(&device), &handle, sizeof handle);
}

#endif
