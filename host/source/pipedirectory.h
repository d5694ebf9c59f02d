#ifndef PIPEDIRECTORY_H
#define PIPEDIRECTORY_H

#include "uniquefd.h"

#include <windows.h>

#include <string>

/// The instances of one pipe name, as all processes see them: a folder with one listening socket
/// for each instance that waits for its client, named by the instance's number, and the file
/// "instances", of which every living instance has the byte of its number locked. The kernel drops
/// the locks of a process that dies, and with the last one the pipe is gone.
class PipeDirectory
{
public:
    /// Opens the folder of @p name, making it if it is missing.
    DWORD open(const std::string &name);

    bool hasInstances() const;
    /// Takes a free instance number, below @p maximum, until this object goes; ERROR_PIPE_BUSY
    /// when there is none.
    DWORD claim(DWORD maximum, DWORD &number);

    /// Makes instance @p number connectable, for one client.
    DWORD listen(DWORD number, UniqueFd &out) const;
    /// Makes it unconnectable again.
    void withdraw(DWORD number) const;
    /// Connects to any instance that waits for a client; ERROR_PIPE_BUSY when none does,
    /// ERROR_FILE_NOT_FOUND when there are no instances at all.
    DWORD connect(UniqueFd &out) const;

private:
    bool isClaimed(DWORD first, DWORD count) const;
    DWORD connectTo(DWORD number, UniqueFd &out) const;

    UniqueFd m_folder;
    UniqueFd m_instances;
};

#endif
