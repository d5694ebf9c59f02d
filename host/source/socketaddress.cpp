#include "socketaddress.h"

#include <algorithm>
#include <iterator>

SocketAddress::SocketAddress(int folder, const std::string &name)
{
    const std::string path = "/proc/self/fd/" + std::to_string(folder) + "/" + name;
    m_address.sun_family = AF_UNIX;
    if (path.size() < std::size(m_address.sun_path))
        std::copy(path.begin(), path.end(), m_address.sun_path);
}
