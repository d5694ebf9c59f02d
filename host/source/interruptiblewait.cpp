#include "interruptiblewait.h"

#include "lasterror.h"

#include <poll.h>
#include <sys/eventfd.h>

#include <system_error>

InterruptibleWait::InterruptibleWait()
    : m_wake(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK))
{
    if (!m_wake)
        throw std::system_error(errno, std::generic_category());
}

void InterruptibleWait::begin()
{
    const std::lock_guard lock(m_mutex);
    m_waiting = true;
}

void InterruptibleWait::end()
{
    const std::lock_guard lock(m_mutex);
    m_waiting = false;
    eventfd_t count = 0;
    eventfd_read(m_wake.get(), &count);
}

DWORD InterruptibleWait::wait(int fd, short events)
{
    pollfd watched[] = {{fd, events, 0}, {m_wake.get(), POLLIN, 0}};
    begin();
    int result = 0;
    do {
        result = poll(watched, 2, -1);
    } while (result < 0 && errno == EINTR);
    const int number = errno;
    end();
    if (result < 0)
        return errorFromErrno(number);
    return watched[1].revents != 0 ? ERROR_OPERATION_ABORTED : ERROR_SUCCESS;
}

bool InterruptibleWait::interrupt()
{
    const std::lock_guard lock(m_mutex);
    if (m_waiting)
        eventfd_write(m_wake.get(), 1);
    return m_waiting;
}
