#ifndef CONNECTION_H
#define CONNECTION_H

#include "servedhandle.h"
#include "uniquefd.h"

#include <poll.h>

#include <memory>
#include <optional>

/// One client of a device: reads its requests, one at a time, lets the handle answer them, and
/// sends the answers when they are due. Never blocks.
class Connection
{
public:
    using Clock = std::chrono::steady_clock;

    Connection(UniqueFd socket, std::unique_ptr<ServedHandle> handle);

    /// What to wait for.
    pollfd interest(Clock::time_point now) const;
    /// When it has something to do though nothing arrives.
    std::optional<Clock::time_point> due(Clock::time_point now) const;
    /// Goes on as far as it can; false when the client is gone or breaks the protocol.
    bool advance(short events, Clock::time_point now);

private:
    bool receive();
    bool send();
    bool takeOpen();
    bool takeRequest(Clock::time_point now);
    template <typename T> std::optional<T> peek() const;
    void reply(std::uint32_t error, const std::vector<std::uint8_t> &output);

    UniqueFd m_socket;
    std::unique_ptr<ServedHandle> m_handle;
    std::vector<std::uint8_t> m_input;
    std::vector<std::uint8_t> m_output;
    std::size_t m_sent = 0;
    Clock::time_point m_outputDue;
    bool m_isOpen = false;
};

#endif
