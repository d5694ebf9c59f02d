#ifndef THREADIO_H
#define THREADIO_H

#include "ioobject.h"

#include <memory>
#include <mutex>

/// What a thread of the process does on a handle, so that another thread can call it off.
class ThreadIo
{
public:
    /// The calling thread's.
    static ThreadIo &current();
    /// Null when no thread has this id. Threads are known from their first call of this library on.
    static std::shared_ptr<ThreadIo> find(DWORD id);

    ThreadIo();
    ThreadIo(const ThreadIo &) = delete;
    ThreadIo &operator=(const ThreadIo &) = delete;

    DWORD id() const { return m_id; }
    /// Calls the operation off in which the thread waits; false when there is none. Any thread.
    bool cancel();

    /// While it lives, the calling thread operates on an object, whose turn it holds.
    class Operation
    {
    public:
        explicit Operation(IoObject &object) { current().operateOn(&object); }
        ~Operation() { current().operateOn(nullptr); }
        Operation(const Operation &) = delete;
        Operation &operator=(const Operation &) = delete;
    };

private:
    void operateOn(IoObject *object);

    const DWORD m_id;
    std::mutex m_mutex;
    IoObject *m_object = nullptr;
};

#endif
