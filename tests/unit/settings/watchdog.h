#ifndef WATCHDOG_H
#define WATCHDOG_H

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>

/// Ends the test program when it still lives after a time that only something stuck takes.
class Watchdog
{
public:
    /// @p subject says what is expected to be over by then.
    explicit Watchdog(const char *subject, std::chrono::seconds time = std::chrono::seconds(20));
    ~Watchdog();
    Watchdog(const Watchdog &) = delete;
    Watchdog &operator=(const Watchdog &) = delete;

private:
    void watch(const char *subject, std::chrono::seconds time);

    std::mutex m_mutex;
    std::condition_variable m_changed;
    bool m_over = false;
    std::thread m_thread;
};

#endif
