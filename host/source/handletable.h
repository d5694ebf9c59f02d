#ifndef HANDLETABLE_H
#define HANDLETABLE_H

#include "handleobject.h"

#include <windows.h>

#include <cstdint>
#include <map>
#include <memory>
#include <mutex>

/// The process's open handles. A handle's value is never given out again, so that one used after
/// its closing is always found out.
class HandleTable
{
public:
    static HandleTable &instance();

    HANDLE insert(std::shared_ptr<HandleObject> object);
    /// Null for an unknown handle and for one of another kind. The result keeps the object alive
    /// while it is in use.
    template <typename Object> std::shared_ptr<Object> find(HANDLE handle)
    {
        return std::dynamic_pointer_cast<Object>(find(handle));
    }
    /// Null for an unknown handle; it is unknown from now on.
    std::shared_ptr<HandleObject> take(HANDLE handle);

private:
    std::shared_ptr<HandleObject> find(HANDLE handle);

    std::mutex m_mutex;
    std::map<HANDLE, std::shared_ptr<HandleObject>> m_objects;
    std::uintptr_t m_last = 0;
};

#endif
