#include "handleoperation.h"
#include "objectname.h"
#include "serverpipe.h"

#include <utility>

namespace {

DWORD createInstance(LPCWSTR path, DWORD openMode, DWORD pipeMode, DWORD maximumInstances,
                     std::shared_ptr<IoObject> &out)
{
    ObjectName object;
    if (const DWORD error = parseObjectName(path, object); error != ERROR_SUCCESS)
        return error;
    if (object.kind != ObjectName::Kind::Pipe)
        return ERROR_INVALID_NAME;
    constexpr DWORD supportedMode = PIPE_TYPE_MESSAGE | PIPE_READMODE_MESSAGE | PIPE_WAIT;
    if (openMode != PIPE_ACCESS_DUPLEX || pipeMode != supportedMode || maximumInstances == 0
        || maximumInstances > PIPE_UNLIMITED_INSTANCES)
        return ERROR_INVALID_PARAMETER;
    return ServerPipe::create(object.name, maximumInstances, out);
}

} // namespace

HANDLE CreateNamedPipeW(LPCWSTR path, DWORD openMode, DWORD pipeMode, DWORD maximumInstances, DWORD,
                        DWORD, DWORD, LPSECURITY_ATTRIBUTES)
{
    HANDLE handle = INVALID_HANDLE_VALUE;
    reported([&] {
        std::shared_ptr<IoObject> created;
        const DWORD error = createInstance(path, openMode, pipeMode, maximumInstances, created);
        if (error == ERROR_SUCCESS)
            handle = HandleTable::instance().insert(std::move(created));
        return error;
    });
    return handle;
}

BOOL ConnectNamedPipe(HANDLE pipe, LPOVERLAPPED)
{
    return operateOn(pipe, [](IoObject &object) { return object.connectClient(); });
}

BOOL DisconnectNamedPipe(HANDLE pipe)
{
    return operateOn(pipe, [](IoObject &object) { return object.disconnectClient(); });
}
