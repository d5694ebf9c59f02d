#ifndef SERVEDHANDLE_H
#define SERVEDHANDLE_H

#include "deviceprotocol.h"

#include <chrono>
#include <cstdint>
#include <vector>

/// What a device answers to one request.
struct Answer {
    std::uint32_t error = 0; ///< Win32
    std::vector<std::uint8_t> output;
    std::chrono::milliseconds delay{0}; ///< to wait before the requester sees it
};

/// One open handle as the device sees it; destruction closes it.
class ServedHandle
{
public:
    virtual ~ServedHandle() = default;
    /// A Win32 error, 0 for success. Called once, first.
    virtual std::uint32_t open(const deviceprotocol::OpenRequest &request) = 0;
    virtual Answer request(std::uint32_t code, const std::vector<std::uint8_t> &input,
                           std::uint32_t outputLength) = 0;
};

#endif
