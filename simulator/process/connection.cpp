#include "connection.h"

#include <sys/socket.h>

#include <array>
#include <cerrno>
#include <cstring>

namespace {

// Far beyond every real request; a client that asks for more is broken.
constexpr std::uint32_t longestBuffer = 1u << 24;

bool wouldBlock()
{
    return errno == EAGAIN || errno == EWOULDBLOCK || errno == EINTR;
}

} // namespace

Connection::Connection(UniqueFd socket, std::unique_ptr<ServedHandle> handle)
    : m_socket(std::move(socket))
    , m_handle(std::move(handle))
{ }

pollfd Connection::interest(Clock::time_point now) const
{
    short events = POLLIN;
    if (!m_output.empty())
        events = now >= m_outputDue ? POLLOUT : 0;
    return {m_socket.get(), events, 0};
}

std::optional<Connection::Clock::time_point> Connection::due(Clock::time_point now) const
{
    if (m_output.empty() || now >= m_outputDue)
        return std::nullopt;
    return m_outputDue;
}

bool Connection::advance(short events, Clock::time_point now)
{
    if (m_output.empty() && (events & POLLIN)) {
        if (!receive() || !(m_isOpen ? takeRequest(now) : takeOpen()))
            return false;
    }
    return m_output.empty() || now < m_outputDue || send();
}

bool Connection::receive()
{
    std::array<std::uint8_t, 65536> bytes;
    for (;;) {
        const ssize_t count = ::recv(m_socket.get(), bytes.data(), bytes.size(), 0);
        if (count < 0)
            return wouldBlock();
        if (count == 0)
            return false;
        m_input.insert(m_input.end(), bytes.begin(), bytes.begin() + count);
    }
}

bool Connection::send()
{
    while (m_sent < m_output.size()) {
        const ssize_t count = ::send(m_socket.get(), m_output.data() + m_sent,
                                     m_output.size() - m_sent, MSG_NOSIGNAL);
        if (count < 0)
            return wouldBlock();
        m_sent += static_cast<std::size_t>(count);
    }
    m_output.clear();
    m_sent = 0;
    return true;
}

template <typename T> std::optional<T> Connection::peek() const
{
    if (m_input.size() < sizeof(T))
        return std::nullopt;
    T value;
    std::memcpy(&value, m_input.data(), sizeof value);
    return value;
}

bool Connection::takeOpen()
{
    const auto request = peek<deviceprotocol::OpenRequest>();
    if (!request)
        return true;
    m_input.erase(m_input.begin(), m_input.begin() + sizeof *request);
    const std::uint32_t error = m_handle->open(*request);
    m_isOpen = error == 0;
    reply(error, {});
    return true;
}

bool Connection::takeRequest(Clock::time_point now)
{
    const auto request = peek<deviceprotocol::IoRequest>();
    if (!request)
        return true;
    if (request->inputLength > longestBuffer || request->outputLength > longestBuffer)
        return false;
    const std::size_t length = sizeof *request + request->inputLength;
    if (m_input.size() < length)
        return true;
    const auto end = m_input.begin() + static_cast<std::ptrdiff_t>(length);
    const std::vector<std::uint8_t> input(m_input.begin() + sizeof *request, end);
    m_input.erase(m_input.begin(), end);
    const Answer answer = m_handle->request(request->code, input, request->outputLength);
    m_outputDue = now + answer.delay;
    reply(answer.error, answer.output);
    return true;
}

void Connection::reply(std::uint32_t error, const std::vector<std::uint8_t> &output)
{
    const deviceprotocol::Reply head{error, static_cast<std::uint32_t>(output.size())};
    const auto *bytes = reinterpret_cast<const std::uint8_t *>(&head);
    m_output.assign(bytes, bytes + sizeof head);
    m_output.insert(m_output.end(), output.begin(), output.end());
}
