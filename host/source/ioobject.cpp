#include "ioobject.h"

void IoObject::close()
{
    const std::lock_guard turn(m_turn);
    m_closed = true;
    release();
}

DWORD IoObject::read(void *, DWORD, DWORD &)
{
    return ERROR_INVALID_FUNCTION;
}

DWORD IoObject::write(const void *, DWORD, DWORD &)
{
    return ERROR_INVALID_FUNCTION;
}

DWORD IoObject::control(DWORD, const void *, DWORD, void *, DWORD, DWORD &)
{
    return ERROR_INVALID_FUNCTION;
}

DWORD IoObject::connectClient()
{
    return ERROR_INVALID_FUNCTION;
}

DWORD IoObject::disconnectClient()
{
    return ERROR_INVALID_FUNCTION;
}
