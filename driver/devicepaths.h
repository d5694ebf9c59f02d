#ifndef DEVICEPATHS_H
#define DEVICEPATHS_H

#include <string>
#include <vector>

/// The driver's sixteen device objects, "\\.\VesmoraAudioBus0" to "\\.\VesmoraAudioBus15", in the
/// order in which they are tried.
extern const std::vector<std::wstring> devicePaths;

#endif
