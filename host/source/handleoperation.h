#ifndef HANDLEOPERATION_H
#define HANDLEOPERATION_H

#include "handletable.h"
#include "lasterror.h"
#include "threadio.h"

/// Runs @p operation, which returns a Win32 error, on the object of @p handle when its turn has
/// come.
template <typename Operation> BOOL operateOn(HANDLE handle, Operation operation) noexcept
{
    return reported([&] {
        const std::shared_ptr<IoObject> object = HandleTable::instance().find<IoObject>(handle);
        if (!object)
            return DWORD{ERROR_INVALID_HANDLE};
        const std::lock_guard turn(object->turn());
        // Another thread may have closed it while this one waited for its turn.
        if (object->isClosed())
            return DWORD{ERROR_INVALID_HANDLE};
        const ThreadIo::Operation underWay(*object);
        return operation(*object);
    });
}

#endif
