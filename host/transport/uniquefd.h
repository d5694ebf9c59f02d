#ifndef UNIQUEFD_H
#define UNIQUEFD_H

/// Owns one file descriptor; -1 means none.
class UniqueFd
{
public:
    UniqueFd() = default;
    explicit UniqueFd(int fd)
        : m_fd(fd)
    { }
    UniqueFd(UniqueFd &&other) noexcept;
    UniqueFd &operator=(UniqueFd &&other) noexcept;
    ~UniqueFd();

    int get() const { return m_fd; }
    explicit operator bool() const { return m_fd >= 0; }
    void reset();

private:
    int m_fd = -1;
};

#endif
