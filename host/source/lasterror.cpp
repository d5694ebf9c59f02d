#include "lasterror.h"

namespace {

thread_local DWORD lastError = ERROR_SUCCESS;

} // namespace

DWORD GetLastError()
{
    return lastError;
}

void SetLastError(DWORD error)
{
    lastError = error;
}

DWORD errorFromErrno(int number)
{
    switch (number) {
    case 0:
        return ERROR_SUCCESS;
    case ENOENT:
        return ERROR_FILE_NOT_FOUND;
    case EACCES:
    case EPERM:
    case EROFS:
        return ERROR_ACCESS_DENIED;
    case ENAMETOOLONG:
        return ERROR_FILENAME_EXCED_RANGE;
    case ENOMEM:
    case ENOBUFS:
    case EMFILE:
    case ENFILE:
        return ERROR_NOT_ENOUGH_MEMORY;
    case EMSGSIZE:
        return ERROR_NOT_ENOUGH_QUOTA;
    default:
        return ERROR_GEN_FAILURE;
    }
}
