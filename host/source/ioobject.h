#ifndef IOOBJECT_H
#define IOOBJECT_H

#include "handleobject.h"

#include <windows.h>

#include <mutex>

/// What is read from and written to. Every operation returns a Win32 error; what a kind of object
/// does not know fails with ERROR_INVALID_FUNCTION.
///
/// All operations but cancel() and close() are called with turn() held: one at a time, as on
/// Windows.
class IoObject : public HandleObject
{
public:
    std::mutex &turn() { return m_turn; }
    bool isClosed() const { return m_closed; }
    /// Waits for its turn.
    void close() override;

    virtual DWORD read(void *buffer, DWORD length, DWORD &count);
    virtual DWORD write(const void *data, DWORD length, DWORD &count);
    /// @p output is written, and @p returned set, only on success.
    virtual DWORD control(DWORD code, const void *input, DWORD inputLength, void *output,
                          DWORD outputLength, DWORD &returned);
    virtual DWORD connectClient();
    virtual DWORD disconnectClient();

    /// Calls a waiting operation off; false when there is none. Any thread.
    virtual bool cancel() = 0;

protected:
    /// Lets go of everything that others can see.
    virtual void release() = 0;

private:
    std::mutex m_turn;
    bool m_closed = false;
};

#endif
