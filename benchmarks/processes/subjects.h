#ifndef SUBJECTS_H
#define SUBJECTS_H

#include "comparison.h"

#include <chrono>

/// How much of the machine's time the figures may take.
struct Patience {
    Effort effort; ///< of programs that are started
    int turns;     ///< of programs that run side by side
    std::chrono::milliseconds
        turn; ///< one of them; a multiple of the periods of the panel's timers
};
inline constexpr Patience usualPatience{{}, 21, std::chrono::seconds(4)};
inline constexpr Patience quickPatience{quickEffort, 1, std::chrono::seconds(2)};

// What vesmora-bench-processes measures of whole programs, a file each.

/// From the start to the icon in the tray.
void measureStart(const Patience &patience);
/// An RX1 is shown and nobody touches anything.
void measureIdle(const Patience &patience);
/// With the icon alone, and with an RX1 shown.
void measureMemory(const Patience &patience);
/// Start and memory against other mixers of the distribution.
void measurePeers(const Patience &patience);

#endif
