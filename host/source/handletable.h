#ifndef HANDLETABLE_H
#define HANDLETABLE_H

#include "ioobject.h"

#include <cstdint>
#include <map>
#include <memory>

/// The process's open handles. A handle's value is never given out again, so that one used after
/// its closing is always found out.
class HandleTable
{
public:
    static HandleTable &instance();

    HANDLE insert(std::shared_ptr<IoObject> object);
    /// Null for an unknown handle. The result keeps the object alive while it is in use.
    std::shared_ptr<IoObject> find(HANDLE handle);
    /// As find(), and the handle is unknown from now on.
    std::shared_ptr<IoObject> take(HANDLE handle);

private:
    std::mutex m_mutex;
    std::map<HANDLE, std::shared_ptr<IoObject>> m_objects;
    std::uintptr_t m_last = 0;
};

#endif
