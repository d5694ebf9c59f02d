#include "clientpipe.h"
#include "devicefile.h"
#include "handleoperation.h"
#include "objectname.h"

#include <utility>

namespace {

DWORD openObject(const ObjectName &object, const deviceprotocol::OpenRequest &request,
                 std::shared_ptr<IoObject> &out)
{
    if (object.kind == ObjectName::Kind::Pipe)
        return ClientPipe::open(object.name, request.desiredAccess, out);
    return DeviceFile::open(object.name, request, out);
}

} // namespace

HANDLE CreateFileW(LPCWSTR path, DWORD access, DWORD shareMode, LPSECURITY_ATTRIBUTES,
                   DWORD disposition, DWORD flags, HANDLE)
{
    HANDLE handle = INVALID_HANDLE_VALUE;
    reported([&] {
        ObjectName object;
        if (const DWORD error = parseObjectName(path, object); error != ERROR_SUCCESS)
            return error;
        if (disposition != OPEN_EXISTING || (flags & ~FILE_ATTRIBUTE_NORMAL) != 0)
            return DWORD{ERROR_INVALID_PARAMETER};
        std::shared_ptr<IoObject> opened;
        const DWORD error = openObject(object, {access, shareMode, disposition, flags}, opened);
        if (error == ERROR_SUCCESS)
            handle = HandleTable::instance().insert(std::move(opened));
        return error;
    });
    return handle;
}

BOOL ReadFile(HANDLE file, LPVOID buffer, DWORD length, LPDWORD count, LPOVERLAPPED)
{
    if (count)
        *count = 0;
    return operateOn(file, [&](IoObject &object) {
        if (!count || (!buffer && length > 0))
            return DWORD{ERROR_NOACCESS};
        return object.read(buffer, length, *count);
    });
}

BOOL WriteFile(HANDLE file, LPCVOID data, DWORD length, LPDWORD count, LPOVERLAPPED)
{
    if (count)
        *count = 0;
    return operateOn(file, [&](IoObject &object) {
        if (!count || (!data && length > 0))
            return DWORD{ERROR_NOACCESS};
        return object.write(data, length, *count);
    });
}

BOOL DeviceIoControl(HANDLE device, DWORD code, LPVOID input, DWORD inputLength, LPVOID output,
                     DWORD outputLength, LPDWORD returned, LPOVERLAPPED)
{
    return operateOn(device, [&](IoObject &object) {
        if (!returned || (!input && inputLength > 0) || (!output && outputLength > 0))
            return DWORD{ERROR_NOACCESS};
        return object.control(code, input, inputLength, output, outputLength, *returned);
    });
}

BOOL CancelIoEx(HANDLE file, LPOVERLAPPED)
{
    return reported([&] {
        const std::shared_ptr<IoObject> object = HandleTable::instance().find<IoObject>(file);
        if (!object)
            return DWORD{ERROR_INVALID_HANDLE};
        return object->cancel() ? DWORD{ERROR_SUCCESS} : DWORD{ERROR_NOT_FOUND};
    });
}

BOOL CloseHandle(HANDLE handle)
{
    return reported([&] {
        const std::shared_ptr<HandleObject> object = HandleTable::instance().take(handle);
        if (!object)
            return DWORD{ERROR_INVALID_HANDLE};
        object->close();
        return DWORD{ERROR_SUCCESS};
    });
}
