#ifndef DEVICEFILE_H
#define DEVICEFILE_H

#include "deviceprotocol.h"
#include "ioobject.h"
#include "uniquefd.h"

#include <atomic>
#include <memory>
#include <string>
#include <vector>

/// An open device: one connection to the socket that serves it.
class DeviceFile final : public IoObject
{
public:
    static DWORD open(const std::string &name, const deviceprotocol::OpenRequest &request,
                      std::shared_ptr<IoObject> &out);

    /// Fails with ERROR_DEVICE_NOT_CONNECTED once the far end is gone, and with ERROR_IO_DEVICE
    /// when it answers against the protocol, after which the connection is of no more use.
    DWORD control(DWORD code, const void *input, DWORD inputLength, void *output,
                  DWORD outputLength, DWORD &returned) override;
    /// A request can be asked to stop, but like a driver that takes no notice it does not.
    bool cancel() override { return m_busy; }

protected:
    void release() override { m_socket.reset(); }

private:
    explicit DeviceFile(UniqueFd socket);

    DWORD greet(const deviceprotocol::OpenRequest &request);
    DWORD transact(const deviceprotocol::IoRequest &request, const void *input);
    DWORD receiveReply(DWORD outputLength);
    bool sendAll(const void *data, std::size_t length);
    bool receiveAll(void *data, std::size_t length);

    UniqueFd m_socket;
    std::vector<unsigned char> m_reply;
    std::atomic<bool> m_busy = false;
};

#endif
