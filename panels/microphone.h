#ifndef MICROPHONE_H
#define MICROPHONE_H

#include "levelmeters.h"

#include <QLatin1StringView>

#include <cstdint>

/// A microphone input, as the device and the settings file know it.
struct Microphone {
    QLatin1StringView name; ///< in its controls' names: "Mic1" has the pad "Mic120dB"
    std::uint8_t channel;   ///< 1-based
    LevelMeters::Source level;
};

#endif
