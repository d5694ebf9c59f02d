#include "watchdog.h"

#include <QtGlobal>

Watchdog::Watchdog(const char *subject, std::chrono::seconds time)
    : m_thread([=, this] { watch(subject, time); })
{ }

Watchdog::~Watchdog()
{
    {
        const std::lock_guard lock(m_mutex);
        m_over = true;
    }
    m_changed.notify_one();
    m_thread.join();
}

void Watchdog::watch(const char *subject, std::chrono::seconds time)
{
    std::unique_lock lock(m_mutex);
    if (!m_changed.wait_for(lock, time, [this] { return m_over; }))
        qFatal("%s takes too long.", subject);
}
