#include "devicepaths.h"

#include "vesmoracontract.h"

namespace {

std::vector<std::wstring> listDevicePaths()
{
    std::vector<std::wstring> paths;
    paths.reserve(VESMORA_BUS_COUNT);
    for (int bus = 0; bus < VESMORA_BUS_COUNT; ++bus)
        paths.push_back(L"\\\\.\\" VESMORA_BUS_NAME + std::to_wstring(bus));
    return paths;
}

} // namespace

const std::vector<std::wstring> devicePaths = listDevicePaths();
