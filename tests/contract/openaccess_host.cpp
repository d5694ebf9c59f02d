#include "openaccess.h"

OpenAccess accessOf(HANDLE, const Record &opening)
{
    return {opening.access, GENERIC_READ | GENERIC_WRITE};
}
