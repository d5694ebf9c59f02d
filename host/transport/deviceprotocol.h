#ifndef DEVICEPROTOCOL_H
#define DEVICEPROTOCOL_H

#include <cstdint>

/// What CreateFileW and DeviceIoControl send over a device's Unix stream socket, and what comes
/// back.
///
/// A device path "\\.\Name" is the socket "Name" in the device folder. A connection is one open
/// handle: it begins with one OpenRequest, answered by one Reply, and carries any number of
/// IoRequests, each followed by inputLength bytes and answered by one Reply followed by
/// bytesReturned bytes. Both ends run on one machine: integers are in its own byte order.
namespace deviceprotocol {

/// The arguments of CreateFileW. A Reply with a non-zero error refuses the open.
struct OpenRequest {
    std::uint32_t desiredAccess;
    std::uint32_t shareMode;
    std::uint32_t creationDisposition;
    std::uint32_t flagsAndAttributes;
};

/// The arguments of DeviceIoControl; lengths in bytes.
struct IoRequest {
    std::uint32_t code;
    std::uint32_t inputLength;
    std::uint32_t outputLength;
};

struct Reply {
    std::uint32_t error;         ///< a Win32 error number, 0 for success
    std::uint32_t bytesReturned; ///< never more than the request's outputLength
};

} // namespace deviceprotocol

#endif
