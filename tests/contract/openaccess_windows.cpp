#include "openaccess.h"

#include <winternl.h>

// Wine tells a driver nothing of the access that is asked for, so the handle itself is asked.
OpenAccess accessOf(HANDLE device, const Record &)
{
    OpenAccess access{0, FILE_GENERIC_READ | FILE_GENERIC_WRITE};
    PUBLIC_OBJECT_BASIC_INFORMATION information{};
    if (NtQueryObject(device, ObjectBasicInformation, &information, sizeof information, nullptr)
        >= 0)
        access.granted = quint32(information.GrantedAccess);
    return access;
}
