#include "listener.h"

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

Listener::Listener(int folder, std::string name, UniqueFd socket)
    : m_folder(folder)
    , m_name(std::move(name))
    , m_socket(std::move(socket))
{ }

Listener::~Listener()
{
    ::unlinkat(m_folder, m_name.c_str(), 0);
}

std::unique_ptr<Listener> Listener::create(int folder, const std::string &name)
{
    // Through the descriptor, as an address is too short for the path of a deep folder.
    const std::string path = "/proc/self/fd/" + std::to_string(folder) + '/' + name;
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.size() >= sizeof address.sun_path) {
        errno = ENAMETOOLONG;
        return nullptr;
    }
    path.copy(address.sun_path, path.size());

    UniqueFd socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    if (!socket)
        return nullptr;
    ::unlinkat(folder, name.c_str(), 0);
    const auto *target = reinterpret_cast<const sockaddr *>(&address);
    if (::bind(socket.get(), target, sizeof address) != 0 || ::listen(socket.get(), SOMAXCONN) != 0)
        return nullptr;
    return std::unique_ptr<Listener>(new Listener(folder, name, std::move(socket)));
}

UniqueFd Listener::accept()
{
    return UniqueFd(::accept4(m_socket.get(), nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK));
}
