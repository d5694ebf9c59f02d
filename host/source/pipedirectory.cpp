#include "pipedirectory.h"

#include "hostfolder.h"
#include "lasterror.h"
#include "socketaddress.h"

#include <fcntl.h>
#include <unistd.h>

#include <utility>

namespace {

/// A lock of the open file, not of the process: two instances in one process exclude each other.
struct flock byteLock(DWORD first, DWORD count)
{
    struct flock lock = {};
    lock.l_type = F_WRLCK;
    lock.l_whence = SEEK_SET;
    lock.l_start = first;
    lock.l_len = count;
    return lock;
}

UniqueFd makeSocket()
{
    return UniqueFd(socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
}

} // namespace

DWORD PipeDirectory::open(const std::string &name)
{
    UniqueFd folder;
    int number = openHostFolder(folder);
    UniqueFd pipes;
    if (number == 0)
        number = openPrivateFolder(folder.get(), "pipe", pipes);
    if (number == 0)
        number = openPrivateFolder(pipes.get(), name, m_folder);
    if (number != 0)
        return errorFromErrno(number);
    m_instances = UniqueFd(openat(m_folder.get(), "instances", O_RDWR | O_CREAT | O_CLOEXEC, 0600));
    return m_instances ? ERROR_SUCCESS : errorFromErrno(errno);
}

bool PipeDirectory::hasInstances() const
{
    return isClaimed(0, PIPE_UNLIMITED_INSTANCES);
}

bool PipeDirectory::isClaimed(DWORD first, DWORD count) const
{
    struct flock lock = byteLock(first, count);
    return fcntl(m_instances.get(), F_OFD_GETLK, &lock) == 0 && lock.l_type != F_UNLCK;
}

DWORD PipeDirectory::claim(DWORD maximum, DWORD &number)
{
    for (number = 0; number < maximum; ++number) {
        struct flock lock = byteLock(number, 1);
        if (fcntl(m_instances.get(), F_OFD_SETLK, &lock) == 0)
            return ERROR_SUCCESS;
        if (errno != EAGAIN && errno != EACCES)
            return errorFromErrno(errno);
    }
    return ERROR_PIPE_BUSY;
}

DWORD PipeDirectory::listen(DWORD number, UniqueFd &out) const
{
    UniqueFd listener = makeSocket();
    if (!listener)
        return errorFromErrno(errno);
    withdraw(number);
    const SocketAddress address(m_folder.get(), std::to_string(number));
    // A queue of length 0 still holds one.
    if (bind(listener.get(), address.get(), address.size()) != 0
        || ::listen(listener.get(), 0) != 0)
        return errorFromErrno(errno);
    out = std::move(listener);
    return ERROR_SUCCESS;
}

void PipeDirectory::withdraw(DWORD number) const
{
    unlinkat(m_folder.get(), std::to_string(number).c_str(), 0);
}

DWORD PipeDirectory::connect(UniqueFd &out) const
{
    if (!hasInstances())
        return ERROR_FILE_NOT_FOUND;
    for (DWORD number = 0; number < PIPE_UNLIMITED_INSTANCES; ++number) {
        if (!isClaimed(number, 1))
            continue;
        const DWORD error = connectTo(number, out);
        if (error != ERROR_PIPE_BUSY)
            return error;
    }
    return ERROR_PIPE_BUSY;
}

DWORD PipeDirectory::connectTo(DWORD number, UniqueFd &out) const
{
    UniqueFd client = makeSocket();
    if (!client)
        return errorFromErrno(errno);
    const SocketAddress address(m_folder.get(), std::to_string(number));
    if (::connect(client.get(), address.get(), address.size()) == 0) {
        out = std::move(client);
        return ERROR_SUCCESS;
    }
    // Not listening, just taken, or taken and waiting to be accepted.
    if (errno == ENOENT || errno == ECONNREFUSED || errno == EAGAIN)
        return ERROR_PIPE_BUSY;
    return errorFromErrno(errno);
}
