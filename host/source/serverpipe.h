#ifndef SERVERPIPE_H
#define SERVERPIPE_H

#include "interruptiblewait.h"
#include "ioobject.h"
#include "messagestream.h"
#include "pipedirectory.h"

#include <memory>
#include <optional>
#include <string>

/// The server's end of one pipe instance. It listens, has a client (perhaps one that already
/// left), or is disconnected and waits for connectClient().
class ServerPipe final : public IoObject
{
public:
    static DWORD create(const std::string &name, DWORD maximumInstances,
                        std::shared_ptr<IoObject> &out);
    ~ServerPipe() override;

    DWORD read(void *buffer, DWORD length, DWORD &count) override;
    DWORD write(const void *data, DWORD length, DWORD &count) override;
    DWORD connectClient() override;
    DWORD disconnectClient() override;
    bool cancel() override { return m_wait.interrupt(); }

protected:
    void release() override;

private:
    ServerPipe() = default;

    DWORD listen();
    bool isClientWaiting() const;
    DWORD acceptClient();
    DWORD requireClient();

    PipeDirectory m_directory;
    DWORD m_number = 0;
    InterruptibleWait m_wait;
    UniqueFd m_listener;
    std::optional<MessageStream> m_client;
};

#endif
