#include "handletable.h"

HandleTable &HandleTable::instance()
{
    // Never destroyed: threads may use handles until the very end of the process.
    static auto *const table = new HandleTable;
    return *table;
}

HANDLE HandleTable::insert(std::shared_ptr<HandleObject> object)
{
    const std::lock_guard lock(m_mutex);
    // Multiples of four, as on Windows: neither null nor INVALID_HANDLE_VALUE is one in practice.
    m_last += 4;
    const auto handle = reinterpret_cast<HANDLE>(m_last);
    m_objects.emplace(handle, std::move(object));
    return handle;
}

std::shared_ptr<HandleObject> HandleTable::find(HANDLE handle)
{
    const std::lock_guard lock(m_mutex);
    const auto found = m_objects.find(handle);
    return found == m_objects.end() ? nullptr : found->second;
}

std::shared_ptr<HandleObject> HandleTable::take(HANDLE handle)
{
    const std::lock_guard lock(m_mutex);
    auto node = m_objects.extract(handle);
    return node.empty() ? nullptr : std::move(node.mapped());
}
