#include "createrefusal.h"

#include "vesmorapipes.h"

#include <QtGlobal>

/// The name belongs to a pipe that allows one instance, which exists.
class CreateRefusal::Lane
{
public:
    Lane()
    {
        if (m_pipe == INVALID_HANDLE_VALUE)
            qFatal("The pipe's name is taken: error %u", unsigned(GetLastError()));
    }
    ~Lane() { CloseHandle(m_pipe); }

private:
    const HANDLE m_pipe = CreateNamedPipeW(VESMORA_WINDOW_PIPE, PIPE_ACCESS_DUPLEX,
                                           PIPE_TYPE_MESSAGE | PIPE_READMODE_MESSAGE | PIPE_WAIT, 1,
                                           VESMORA_PIPE_BUFFER_SIZE, VESMORA_PIPE_BUFFER_SIZE,
                                           VESMORA_PIPE_TIMEOUT, nullptr);
};

CreateRefusal::CreateRefusal()
    : m_lane(std::make_unique<Lane>())
    , m_error(ERROR_PIPE_BUSY)
{ }

CreateRefusal::~CreateRefusal() = default;
