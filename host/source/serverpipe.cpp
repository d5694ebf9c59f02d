#include "serverpipe.h"

#include "lasterror.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>

#include <utility>

DWORD ServerPipe::create(const std::string &name, DWORD maximumInstances,
                         std::shared_ptr<IoObject> &out)
{
    const std::shared_ptr<ServerPipe> pipe(new ServerPipe);
    DWORD error = pipe->m_directory.open(name);
    if (error == ERROR_SUCCESS)
        error = pipe->m_directory.claim(maximumInstances, pipe->m_number);
    if (error == ERROR_SUCCESS)
        error = pipe->listen();
    if (error == ERROR_SUCCESS)
        out = pipe;
    return error;
}

ServerPipe::~ServerPipe()
{
    ServerPipe::release();
}

void ServerPipe::release()
{
    if (m_listener)
        m_directory.withdraw(m_number);
    m_listener.reset();
    m_client.reset();
    m_directory = {};
}

DWORD ServerPipe::listen()
{
    return m_directory.listen(m_number, m_listener);
}

bool ServerPipe::isClientWaiting() const
{
    pollfd watched = {m_listener.get(), POLLIN, 0};
    return m_listener && poll(&watched, 1, 0) > 0;
}

DWORD ServerPipe::acceptClient()
{
    // Shut down first: a second client that comes between the two calls is then refused, while
    // the one in the queue can still be taken out.
    shutdown(m_listener.get(), SHUT_RDWR);
    UniqueFd client(accept4(m_listener.get(), nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK));
    const int number = errno;
    m_directory.withdraw(m_number);
    m_listener.reset();
    if (!client)
        return errorFromErrno(number);
    m_client.emplace(std::move(client), MessageStream::ReadMode::Message, m_wait);
    return ERROR_SUCCESS;
}

DWORD ServerPipe::connectClient()
{
    const bool wasDisconnected = !m_listener && !m_client;
    if (wasDisconnected) {
        if (const DWORD error = listen(); error != ERROR_SUCCESS)
            return error;
    } else if (isClientWaiting()) {
        if (const DWORD error = acceptClient(); error != ERROR_SUCCESS)
            return error;
    }
    if (m_client)
        return m_client->isFarEndGone() ? ERROR_NO_DATA : ERROR_PIPE_CONNECTED;
    // A client that comes from here on found somebody waiting, even if it leaves at once.
    const DWORD error = m_wait.wait(m_listener.get(), POLLIN);
    return error == ERROR_SUCCESS ? acceptClient() : error;
}

/// A client is connected from the moment it opened the pipe, accepted or not.
DWORD ServerPipe::requireClient()
{
    if (isClientWaiting()) {
        if (const DWORD error = acceptClient(); error != ERROR_SUCCESS)
            return error;
    }
    if (m_client)
        return ERROR_SUCCESS;
    return m_listener ? ERROR_PIPE_LISTENING : ERROR_PIPE_NOT_CONNECTED;
}

DWORD ServerPipe::disconnectClient()
{
    if (const DWORD error = requireClient(); error != ERROR_SUCCESS)
        return error;
    // The client has to know that this was no ordinary end, for it loses what it has not read.
    if (const int signal = m_client->receivedDescriptor(); signal >= 0)
        eventfd_write(signal, 1);
    m_client.reset();
    return ERROR_SUCCESS;
}

DWORD ServerPipe::read(void *buffer, DWORD length, DWORD &count)
{
    const DWORD error = requireClient();
    return error == ERROR_SUCCESS ? m_client->read(buffer, length, count) : error;
}

DWORD ServerPipe::write(const void *data, DWORD length, DWORD &count)
{
    DWORD error = requireClient();
    if (error == ERROR_SUCCESS)
        error = m_client->write(data, length);
    if (error == ERROR_SUCCESS)
        count = length;
    return error;
}
