#ifndef CREATEREFUSAL_H
#define CREATEREFUSAL_H

#include <windows.h>

#include <memory>

/// While it lives, the system refuses to create the pipe on which the settings dialog listens.
class CreateRefusal
{
public:
    CreateRefusal();
    ~CreateRefusal();

    /// The Win32 error it refuses with.
    DWORD error() const { return m_error; }

private:
    class Lane; // what it takes to be refused

    std::unique_ptr<Lane> m_lane;
    DWORD m_error = 0;
};

#endif
