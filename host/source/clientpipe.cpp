#include "clientpipe.h"

#include "lasterror.h"
#include "pipedirectory.h"

#include <poll.h>
#include <sys/eventfd.h>

#include <utility>

DWORD ClientPipe::open(const std::string &name, DWORD access, std::shared_ptr<IoObject> &out)
{
    PipeDirectory directory;
    UniqueFd socket;
    DWORD error = directory.open(name);
    if (error == ERROR_SUCCESS)
        error = directory.connect(socket);
    if (error != ERROR_SUCCESS)
        return error;
    const std::shared_ptr<ClientPipe> pipe(new ClientPipe(access));
    error = pipe->attach(std::move(socket));
    if (error == ERROR_SUCCESS)
        out = pipe;
    return error;
}

ClientPipe::ClientPipe(DWORD access)
    : m_access(access)
    , m_disconnected(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK))
{ }

DWORD ClientPipe::attach(UniqueFd socket)
{
    if (!m_disconnected)
        return errorFromErrno(errno);
    m_stream.emplace(std::move(socket), MessageStream::ReadMode::Byte, m_wait);
    const DWORD error = m_stream->sendDescriptor(m_disconnected.get());
    // A server that closed this very moment: we were connected, and the next call will tell.
    return error == ERROR_NO_DATA ? ERROR_SUCCESS : error;
}

void ClientPipe::release()
{
    m_stream.reset();
    m_disconnected.reset();
}

bool ClientPipe::wasDisconnected() const
{
    pollfd watched = {m_disconnected.get(), POLLIN, 0};
    return poll(&watched, 1, 0) > 0;
}

/// What reading and writing share: the right to do it, and the server's disconnecting us.
template <typename Transfer> DWORD ClientPipe::transfer(DWORD access, Transfer transfer)
{
    if ((m_access & access) == 0)
        return ERROR_ACCESS_DENIED;
    if (wasDisconnected())
        return ERROR_PIPE_NOT_CONNECTED;
    const DWORD error = transfer();
    if ((error == ERROR_BROKEN_PIPE || error == ERROR_NO_DATA) && wasDisconnected())
        return ERROR_PIPE_NOT_CONNECTED;
    return error;
}

DWORD ClientPipe::read(void *buffer, DWORD length, DWORD &count)
{
    return transfer(GENERIC_READ, [&] { return m_stream->read(buffer, length, count); });
}

DWORD ClientPipe::write(const void *data, DWORD length, DWORD &count)
{
    return transfer(GENERIC_WRITE, [&] {
        const DWORD error = m_stream->write(data, length);
        if (error == ERROR_SUCCESS)
            count = length;
        return error;
    });
}
