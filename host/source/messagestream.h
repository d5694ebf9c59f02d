#ifndef MESSAGESTREAM_H
#define MESSAGESTREAM_H

#include "interruptiblewait.h"
#include "uniquefd.h"

#include <windows.h>

#include <optional>
#include <vector>

/// Messages in both directions over a connected SOCK_SEQPACKET socket: one packet a message, which
/// keeps their boundaries. A first byte before each message tells an empty one from the end.
///
/// Read from and written to by one thread at a time.
class MessageStream
{
public:
    enum class ReadMode {
        Message, ///< a read returns at most one message
        Byte     ///< a read returns what has arrived, whatever the messages
    };

    /// The longest message, which must fit into the kernel's send buffer as one packet.
    static constexpr DWORD maximumLength = 128 * 1024;

    MessageStream(UniqueFd socket, ReadMode mode, InterruptibleWait &wait);

    /// Waits for a message. ERROR_MORE_DATA when there is more of it than @p length, to be read
    /// next; ERROR_BROKEN_PIPE when the far end is gone and everything it sent has been read.
    DWORD read(void *buffer, DWORD length, DWORD &count);
    /// Waits until there is room. ERROR_NO_DATA when the far end is gone.
    DWORD write(const void *data, DWORD length);
    bool isFarEndGone() const;

    /// Sends @p fd along, before any message.
    DWORD sendDescriptor(int fd);
    /// The descriptor that the far end sent, or -1 when it has not.
    int receivedDescriptor();

private:
    struct Message {
        std::vector<unsigned char> bytes;
        std::size_t position = 0;
        std::size_t rest() const { return bytes.size() - position; }
    };

    DWORD receive();
    DWORD receiveNow();
    DWORD receivePacket(std::vector<unsigned char> &packet);
    DWORD take(void *buffer, DWORD length);
    DWORD sendPacket(const struct msghdr &header);

    UniqueFd m_socket;
    ReadMode m_mode;
    InterruptibleWait &m_wait;
    std::optional<Message> m_message;
    UniqueFd m_descriptor;
};

#endif
