#ifndef LISTENER_H
#define LISTENER_H

#include "uniquefd.h"

#include <memory>
#include <string>

/// A socket file that accepts connections, as long as the object lives.
class Listener
{
public:
    /// @p folder is an open folder that outlives the object. Null with errno set when the socket
    /// cannot be made. A file of that name is replaced: who may serve the folder is decided by its
    /// lock, so that it can only be left from a crash.
    static std::unique_ptr<Listener> create(int folder, const std::string &name);
    ~Listener();
    Listener(const Listener &) = delete;
    Listener &operator=(const Listener &) = delete;

    int number() const { return m_socket.get(); }
    /// None when nobody is waiting any more.
    UniqueFd accept();

private:
    Listener(int folder, std::string name, UniqueFd socket);

    int m_folder;
    std::string m_name;
    UniqueFd m_socket;
};

#endif
