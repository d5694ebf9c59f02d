#ifndef SOCKETADDRESS_H
#define SOCKETADDRESS_H

#include <sys/socket.h>
#include <sys/un.h>

#include <string>

/// The address of the Unix socket @p name in an open folder. It goes through the folder's
/// descriptor: that keeps it within the short length an address may have, however deep the folder
/// lies, and inside the very folder that was judged to be private.
class SocketAddress
{
public:
    SocketAddress(int folder, const std::string &name);

    /// False when even @p name alone is too long.
    bool isValid() const { return m_address.sun_path[0] != '\0'; }
    const sockaddr *get() const { return reinterpret_cast<const sockaddr *>(&m_address); }
    socklen_t size() const { return sizeof m_address; }

private:
    sockaddr_un m_address = {};
};

#endif
