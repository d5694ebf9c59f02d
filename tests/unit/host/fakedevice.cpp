#include "fakedevice.h"

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <utility>

QByteArray FakeConnection::receive(qsizetype length)
{
    QByteArray bytes(length, '\0');
    const ssize_t received =
        recv(m_socket, bytes.data(), static_cast<std::size_t>(length), MSG_WAITALL);
    return received == length ? bytes : QByteArray();
}

bool FakeConnection::send(const QByteArray &bytes)
{
    return ::send(m_socket, bytes.constData(), static_cast<std::size_t>(bytes.size()), MSG_NOSIGNAL)
        == bytes.size();
}

bool FakeConnection::sendReply(std::uint32_t error, const QByteArray &bytes)
{
    const deviceprotocol::Reply reply{error, static_cast<std::uint32_t>(bytes.size())};
    return send(QByteArray(reinterpret_cast<const char *>(&reply), sizeof reply) + bytes);
}

bool FakeConnection::answer(std::uint32_t error, const QByteArray &bytes)
{
    receiveRecord<deviceprotocol::IoRequest>();
    return sendReply(error, bytes);
}

deviceprotocol::OpenRequest FakeConnection::greet(std::uint32_t error)
{
    const auto request = receiveRecord<deviceprotocol::OpenRequest>();
    sendReply(error);
    return request;
}

FakeDevice::FakeDevice(const QString &path, Script script)
    : m_script(std::move(script))
{
    const QByteArray name = path.toLocal8Bit();
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    std::copy(name.begin(), name.end(), address.sun_path);
    m_listener = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (bind(m_listener, reinterpret_cast<const sockaddr *>(&address), sizeof address) != 0
        || listen(m_listener, 8) != 0)
        qFatal("FakeDevice cannot listen on %s", name.constData());
    m_thread = std::thread([this] { serve(); });
}

FakeDevice::~FakeDevice()
{
    shutdown(m_listener, SHUT_RDWR);
    m_thread.join();
    close(m_listener);
}

void FakeDevice::serve()
{
    std::vector<std::thread> connections;
    for (;;) {
        const int socket = accept4(m_listener, nullptr, nullptr, SOCK_CLOEXEC);
        if (socket < 0)
            break;
        connections.emplace_back([this, socket] {
            FakeConnection connection(socket);
            m_script(connection);
            close(socket);
        });
    }
    for (std::thread &connection : connections)
        connection.join();
}
