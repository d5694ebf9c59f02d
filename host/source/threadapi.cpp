#include "handletable.h"
#include "lasterror.h"
#include "threadio.h"

#include <utility>

namespace {

/// A thread, opened with certain rights.
class ThreadHandle final : public HandleObject
{
public:
    ThreadHandle(std::shared_ptr<ThreadIo> thread, DWORD access)
        : m_thread(std::move(thread))
        , m_access(access)
    { }

    void close() override { }

    DWORD cancel()
    {
        if (!(m_access & THREAD_TERMINATE))
            return ERROR_ACCESS_DENIED;
        return m_thread->cancel() ? ERROR_SUCCESS : ERROR_NOT_FOUND;
    }

private:
    const std::shared_ptr<ThreadIo> m_thread;
    const DWORD m_access;
};

} // namespace

DWORD GetCurrentThreadId()
{
    return ThreadIo::current().id();
}

HANDLE OpenThread(DWORD access, BOOL, DWORD id)
{
    HANDLE handle = nullptr;
    reported([&] {
        std::shared_ptr<ThreadIo> thread = ThreadIo::find(id);
        if (!thread)
            return DWORD{ERROR_INVALID_PARAMETER};
        handle = HandleTable::instance().insert(
            std::make_shared<ThreadHandle>(std::move(thread), access));
        return DWORD{ERROR_SUCCESS};
    });
    return handle;
}

BOOL CancelSynchronousIo(HANDLE thread)
{
    return reported([&] {
        const auto opened = HandleTable::instance().find<ThreadHandle>(thread);
        return opened ? opened->cancel() : DWORD{ERROR_INVALID_HANDLE};
    });
}
