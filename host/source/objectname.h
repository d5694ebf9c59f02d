#ifndef OBJECTNAME_H
#define OBJECTNAME_H

#include <windows.h>

#include <string>

/// A path of the device namespace, taken apart.
struct ObjectName {
    enum class Kind { Device, Pipe };

    Kind kind = Kind::Device;
    std::string name; ///< UTF-8, a single component that may serve as a file name
};

/// Takes "\\.\Name" or "\\.\pipe\Name" apart. Anything else fails with the error that Windows has
/// for it; paths outside the device namespace with ERROR_NOT_SUPPORTED.
DWORD parseObjectName(LPCWSTR path, ObjectName &out);

#endif
