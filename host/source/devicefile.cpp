#include "devicefile.h"

#include "hostfolder.h"
#include "lasterror.h"
#include "socketaddress.h"

#include <algorithm>
#include <utility>

namespace {

DWORD connectError(int number)
{
    // A socket that nobody listens on is what a finished process leaves behind.
    return number == ECONNREFUSED ? ERROR_FILE_NOT_FOUND : errorFromErrno(number);
}

DWORD connectTo(const std::string &name, UniqueFd &out)
{
    UniqueFd folder;
    if (const int number = openHostFolder(folder); number != 0)
        return errorFromErrno(number);
    UniqueFd socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    if (!socket)
        return errorFromErrno(errno);
    const SocketAddress address(folder.get(), name);
    if (!address.isValid())
        return ERROR_FILENAME_EXCED_RANGE;
    int result = 0;
    do {
        result = connect(socket.get(), address.get(), address.size());
    } while (result != 0 && errno == EINTR);
    if (result != 0)
        return connectError(errno);
    out = std::move(socket);
    return ERROR_SUCCESS;
}

} // namespace

DWORD DeviceFile::open(const std::string &name, const deviceprotocol::OpenRequest &request,
                       std::shared_ptr<IoObject> &out)
{
    UniqueFd socket;
    if (const DWORD error = connectTo(name, socket); error != ERROR_SUCCESS)
        return error;
    const std::shared_ptr<DeviceFile> device(new DeviceFile(std::move(socket)));
    if (const DWORD error = device->greet(request); error != ERROR_SUCCESS)
        return error;
    out = device;
    return ERROR_SUCCESS;
}

DeviceFile::DeviceFile(UniqueFd socket)
    : m_socket(std::move(socket))
{ }

DWORD DeviceFile::greet(const deviceprotocol::OpenRequest &request)
{
    if (!sendAll(&request, sizeof request))
        return ERROR_DEVICE_NOT_CONNECTED;
    return receiveReply(0);
}

DWORD DeviceFile::control(DWORD code, const void *input, DWORD inputLength, void *output,
                          DWORD outputLength, DWORD &returned)
{
    m_busy = true;
    const DWORD error = transact({code, inputLength, outputLength}, input);
    m_busy = false;
    if (error != ERROR_SUCCESS)
        return error;
    std::copy(m_reply.begin(), m_reply.end(), static_cast<unsigned char *>(output));
    returned = static_cast<DWORD>(m_reply.size());
    return ERROR_SUCCESS;
}

DWORD DeviceFile::transact(const deviceprotocol::IoRequest &request, const void *input)
{
    if (!sendAll(&request, sizeof request) || !sendAll(input, request.inputLength))
        return ERROR_DEVICE_NOT_CONNECTED;
    return receiveReply(request.outputLength);
}

DWORD DeviceFile::receiveReply(DWORD outputLength)
{
    deviceprotocol::Reply reply = {};
    if (!receiveAll(&reply, sizeof reply))
        return ERROR_DEVICE_NOT_CONNECTED;
    if (reply.bytesReturned > outputLength) {
        // Out of step with the far end, nothing that arrives later can be trusted.
        m_socket.reset();
        return ERROR_IO_DEVICE;
    }
    m_reply.resize(reply.bytesReturned);
    if (!receiveAll(m_reply.data(), m_reply.size()))
        return ERROR_DEVICE_NOT_CONNECTED;
    return reply.error;
}

bool DeviceFile::sendAll(const void *data, std::size_t length)
{
    const auto *rest = static_cast<const unsigned char *>(data);
    while (length > 0) {
        const ssize_t sent = send(m_socket.get(), rest, length, MSG_NOSIGNAL);
        if (sent < 0 && errno == EINTR)
            continue;
        if (sent < 0)
            return false;
        rest += sent;
        length -= static_cast<std::size_t>(sent);
    }
    return true;
}

bool DeviceFile::receiveAll(void *data, std::size_t length)
{
    auto *rest = static_cast<unsigned char *>(data);
    while (length > 0) {
        const ssize_t received = recv(m_socket.get(), rest, length, 0);
        if (received < 0 && errno == EINTR)
            continue;
        if (received <= 0)
            return false;
        rest += received;
        length -= static_cast<std::size_t>(received);
    }
    return true;
}
