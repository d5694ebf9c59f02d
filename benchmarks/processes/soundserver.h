#ifndef SOUNDSERVER_H
#define SOUNDSERVER_H

#include "childprocess.h"

#include <QTemporaryDir>

/// A sound server without any hardware, for programs that show nothing without one. What this
/// process starts finds it, as long as it lives.
class SoundServer
{
public:
    /// Fatal when there can be none.
    SoundServer();
    ~SoundServer();
    SoundServer(const SoundServer &) = delete;
    SoundServer &operator=(const SoundServer &) = delete;

private:
    QTemporaryDir m_folder;
    ChildProcess m_process;
};

#endif
