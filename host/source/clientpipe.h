#ifndef CLIENTPIPE_H
#define CLIENTPIPE_H

#include "interruptiblewait.h"
#include "ioobject.h"
#include "messagestream.h"

#include <memory>
#include <optional>
#include <string>

/// The client's end of a pipe. As on Windows it reads bytes until told otherwise, even from a pipe
/// of messages, and telling it otherwise is not supported.
class ClientPipe final : public IoObject
{
public:
    /// @p access is of GENERIC_READ and GENERIC_WRITE.
    static DWORD open(const std::string &name, DWORD access, std::shared_ptr<IoObject> &out);

    DWORD read(void *buffer, DWORD length, DWORD &count) override;
    DWORD write(const void *data, DWORD length, DWORD &count) override;
    bool cancel() override { return m_wait.interrupt(); }

protected:
    void release() override;

private:
    explicit ClientPipe(DWORD access);

    DWORD attach(UniqueFd socket);
    bool wasDisconnected() const;
    template <typename Transfer> DWORD transfer(DWORD access, Transfer transfer);

    DWORD m_access;
    InterruptibleWait m_wait;
    /// An event that the server sets when it disconnects us.
    UniqueFd m_disconnected;
    std::optional<MessageStream> m_stream;
};

#endif
