#include "messagestream.h"

#include "lasterror.h"

#include <poll.h>
#include <sys/socket.h>

#include <algorithm>
#include <cstring>
#include <utility>

namespace {

/// No message has arrived yet; never leaves this file.
constexpr DWORD nothingYet = 0xFFFFFFFF;

// What the first byte of a packet says about the rest.
constexpr unsigned char messageMark = 'm';
constexpr unsigned char descriptorMark = 'd';

/// Room for one descriptor beside a packet.
union DescriptorBuffer {
    cmsghdr alignment;
    char bytes[CMSG_SPACE(sizeof(int))];
};

UniqueFd descriptorIn(msghdr &header)
{
    const cmsghdr *control = CMSG_FIRSTHDR(&header);
    if (!control || control->cmsg_level != SOL_SOCKET || control->cmsg_type != SCM_RIGHTS)
        return {};
    int fd = -1;
    std::memcpy(&fd, CMSG_DATA(control), sizeof fd);
    return UniqueFd(fd);
}

} // namespace

MessageStream::MessageStream(UniqueFd socket, ReadMode mode, InterruptibleWait &wait)
    : m_socket(std::move(socket))
    , m_mode(mode)
    , m_wait(wait)
{ }

DWORD MessageStream::read(void *buffer, DWORD length, DWORD &count)
{
    count = 0;
    if (const DWORD error = receive(); error != ERROR_SUCCESS)
        return error;
    auto *bytes = static_cast<unsigned char *>(buffer);
    count = take(bytes, length);
    if (m_mode == ReadMode::Message)
        return m_message ? ERROR_MORE_DATA : ERROR_SUCCESS;
    while (count < length && receiveNow() == ERROR_SUCCESS)
        count += take(bytes + count, length - count);
    return ERROR_SUCCESS;
}

/// Moves what fits of the current message; a message used up is current no more.
DWORD MessageStream::take(void *buffer, DWORD length)
{
    const std::size_t count = std::min<std::size_t>(length, m_message->rest());
    std::copy_n(m_message->bytes.data() + m_message->position, count,
                static_cast<unsigned char *>(buffer));
    m_message->position += count;
    if (m_message->rest() == 0)
        m_message.reset();
    return static_cast<DWORD>(count);
}

/// Waits until there is a current message.
DWORD MessageStream::receive()
{
    DWORD error = receiveNow();
    while (error == nothingYet) {
        error = m_wait.wait(m_socket.get(), POLLIN);
        if (error == ERROR_SUCCESS)
            error = receiveNow();
    }
    return error;
}

DWORD MessageStream::receiveNow()
{
    while (!m_message) {
        std::vector<unsigned char> packet;
        if (const DWORD error = receivePacket(packet); error != ERROR_SUCCESS)
            return error;
        if (packet.front() == messageMark)
            m_message = Message{std::move(packet), 1};
    }
    return ERROR_SUCCESS;
}

DWORD MessageStream::receivePacket(std::vector<unsigned char> &packet)
{
    // One byte more than a packet can have is never filled.
    packet.resize(1 + maximumLength);
    DescriptorBuffer control = {};
    iovec part = {packet.data(), packet.size()};
    msghdr header = {};
    header.msg_iov = &part;
    header.msg_iovlen = 1;
    header.msg_control = &control;
    header.msg_controllen = sizeof control;
    ssize_t received = 0;
    do {
        // A far end that closed without reading everything is reported once, before its messages.
        received = recvmsg(m_socket.get(), &header, MSG_DONTWAIT | MSG_CMSG_CLOEXEC);
    } while (received < 0 && (errno == EINTR || errno == ECONNRESET));
    if (received < 0)
        return errno == EAGAIN ? nothingYet : errorFromErrno(errno);
    if (received == 0)
        return ERROR_BROKEN_PIPE;
    packet.resize(static_cast<std::size_t>(received));
    if (UniqueFd descriptor = descriptorIn(header))
        m_descriptor = std::move(descriptor);
    return ERROR_SUCCESS;
}

DWORD MessageStream::write(const void *data, DWORD length)
{
    if (length > maximumLength)
        return ERROR_NOT_ENOUGH_QUOTA;
    unsigned char mark = messageMark;
    iovec parts[] = {{&mark, sizeof mark}, {const_cast<void *>(data), length}};
    msghdr header = {};
    header.msg_iov = parts;
    header.msg_iovlen = 2;
    return sendPacket(header);
}

DWORD MessageStream::sendDescriptor(int fd)
{
    unsigned char mark = descriptorMark;
    iovec part = {&mark, sizeof mark};
    DescriptorBuffer control = {};
    msghdr header = {};
    header.msg_iov = &part;
    header.msg_iovlen = 1;
    header.msg_control = &control;
    header.msg_controllen = sizeof control;
    cmsghdr *attached = CMSG_FIRSTHDR(&header);
    attached->cmsg_level = SOL_SOCKET;
    attached->cmsg_type = SCM_RIGHTS;
    attached->cmsg_len = CMSG_LEN(sizeof fd);
    std::memcpy(CMSG_DATA(attached), &fd, sizeof fd);
    return sendPacket(header);
}

DWORD MessageStream::sendPacket(const msghdr &header)
{
    while (sendmsg(m_socket.get(), &header, MSG_DONTWAIT | MSG_NOSIGNAL) < 0) {
        if (errno == EAGAIN) {
            const DWORD error = m_wait.wait(m_socket.get(), POLLOUT);
            if (error != ERROR_SUCCESS)
                return error;
        } else if (errno == EPIPE || errno == ECONNRESET || errno == ECONNREFUSED
                   || errno == ENOTCONN) {
            return ERROR_NO_DATA;
        } else if (errno != EINTR) {
            return errorFromErrno(errno);
        }
    }
    return ERROR_SUCCESS;
}

bool MessageStream::isFarEndGone() const
{
    pollfd watched = {m_socket.get(), 0, 0};
    return poll(&watched, 1, 0) > 0 && (watched.revents & POLLHUP) != 0;
}

int MessageStream::receivedDescriptor()
{
    // It comes first, so that looking for it cannot lose a message.
    if (!m_descriptor)
        receiveNow();
    return m_descriptor.get();
}
