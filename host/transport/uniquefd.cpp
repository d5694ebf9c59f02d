#include "uniquefd.h"

#include <unistd.h>

#include <utility>

UniqueFd::UniqueFd(UniqueFd &&other) noexcept
    : m_fd(std::exchange(other.m_fd, -1))
{ }

UniqueFd &UniqueFd::operator=(UniqueFd &&other) noexcept
{
    if (this != &other) {
        reset();
        m_fd = std::exchange(other.m_fd, -1);
    }
    return *this;
}

UniqueFd::~UniqueFd()
{
    reset();
}

void UniqueFd::reset()
{
    if (m_fd >= 0)
        close(m_fd);
    m_fd = -1;
}
