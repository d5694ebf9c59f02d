#ifndef INTERRUPTIBLEWAIT_H
#define INTERRUPTIBLEWAIT_H

#include "uniquefd.h"

#include <windows.h>

#include <mutex>

/// A wait for a descriptor that another thread can call off. One thread waits at a time.
class InterruptibleWait
{
public:
    InterruptibleWait();

    /// Returns once @p fd has one of @p events (of poll()) or its far end is gone;
    /// ERROR_OPERATION_ABORTED when called off.
    DWORD wait(int fd, short events);

    /// Calls the current wait off. Returns false when nobody waits; a later wait is not affected.
    bool interrupt();

private:
    void begin();
    void end();

    std::mutex m_mutex;
    bool m_waiting = false;
    UniqueFd m_wake;
};

#endif
