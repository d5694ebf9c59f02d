#ifndef FAKEDEVICE_H
#define FAKEDEVICE_H

#include "deviceprotocol.h"

#include <QByteArray>
#include <QString>

#include <functional>
#include <thread>
#include <vector>

/// The far end of one accepted connection, for a test's script to play. Calls that fail because the
/// near end is gone return false or nothing.
class FakeConnection
{
public:
    explicit FakeConnection(int socket)
        : m_socket(socket)
    { }

    QByteArray receive(qsizetype length);
    template <typename Record> Record receiveRecord()
    {
        Record record = {};
        const QByteArray bytes = receive(sizeof record);
        std::copy(bytes.begin(), bytes.end(), reinterpret_cast<char *>(&record));
        return record;
    }
    bool send(const QByteArray &bytes);
    bool sendReply(std::uint32_t error, const QByteArray &bytes = {});
    /// Takes a request without input and answers it.
    bool answer(std::uint32_t error = 0, const QByteArray &bytes = {});

    /// Answers the open request with @p error.
    deviceprotocol::OpenRequest greet(std::uint32_t error = 0);

private:
    int m_socket;
};

/// Serves a device's socket: plays the script to every connection, each on a thread of its own.
/// The connection ends with the script.
class FakeDevice
{
public:
    using Script = std::function<void(FakeConnection &)>;

    FakeDevice(const QString &path, Script script);
    /// Waits for the script to end.
    ~FakeDevice();
    FakeDevice(const FakeDevice &) = delete;
    FakeDevice &operator=(const FakeDevice &) = delete;

private:
    void serve();

    int m_listener = -1;
    Script m_script;
    std::thread m_thread;
};

#endif
