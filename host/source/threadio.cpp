#include "threadio.h"

#include <atomic>
#include <map>

namespace {

/// The threads that live.
class Registry
{
public:
    static Registry &instance()
    {
        // Never destroyed: threads may end at the very end of the process.
        static auto *const registry = new Registry;
        return *registry;
    }

    void insert(const std::shared_ptr<ThreadIo> &thread)
    {
        const std::lock_guard lock(m_mutex);
        m_threads.emplace(thread->id(), thread);
    }
    void remove(DWORD id)
    {
        const std::lock_guard lock(m_mutex);
        m_threads.erase(id);
    }
    std::shared_ptr<ThreadIo> find(DWORD id)
    {
        const std::lock_guard lock(m_mutex);
        const auto found = m_threads.find(id);
        return found == m_threads.end() ? nullptr : found->second;
    }

private:
    std::mutex m_mutex;
    std::map<DWORD, std::shared_ptr<ThreadIo>> m_threads;
};

/// Registers the thread it belongs to, for as long as that lives.
class Membership
{
public:
    Membership() { Registry::instance().insert(m_thread); }
    ~Membership() { Registry::instance().remove(m_thread->id()); }
    Membership(const Membership &) = delete;
    Membership &operator=(const Membership &) = delete;

    ThreadIo &thread() { return *m_thread; }

private:
    const std::shared_ptr<ThreadIo> m_thread = std::make_shared<ThreadIo>();
};

/// Multiples of four, as on Windows, and none is given out again.
DWORD nextId()
{
    static std::atomic<DWORD> last = 0;
    return last += 4;
}

} // namespace

ThreadIo &ThreadIo::current()
{
    static thread_local Membership membership;
    return membership.thread();
}

std::shared_ptr<ThreadIo> ThreadIo::find(DWORD id)
{
    return Registry::instance().find(id);
}

ThreadIo::ThreadIo()
    : m_id(nextId())
{ }

void ThreadIo::operateOn(IoObject *object)
{
    const std::lock_guard lock(m_mutex);
    m_object = object;
}

bool ThreadIo::cancel()
{
    // Locked throughout: the thread cannot leave the object to another thread meanwhile.
    const std::lock_guard lock(m_mutex);
    return m_object && m_object->cancel();
}
