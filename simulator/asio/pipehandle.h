#ifndef PIPEHANDLE_H
#define PIPEHANDLE_H

#include <windows.h>

#include <utility>

/// Owns one end of a named pipe.
class PipeHandle
{
public:
    explicit PipeHandle(HANDLE handle = INVALID_HANDLE_VALUE)
        : m_handle(handle)
    { }
    PipeHandle(PipeHandle &&other) noexcept
        : m_handle(std::exchange(other.m_handle, INVALID_HANDLE_VALUE))
    { }
    PipeHandle &operator=(PipeHandle &&other) noexcept
    {
        std::swap(m_handle, other.m_handle);
        return *this;
    }
    ~PipeHandle()
    {
        if (*this)
            CloseHandle(m_handle);
    }

    HANDLE get() const { return m_handle; }
    explicit operator bool() const { return m_handle != INVALID_HANDLE_VALUE; }

private:
    HANDLE m_handle;
};

#endif
