#ifndef MIXERMATRIX_H
#define MIXERMATRIX_H

#include "vesmoracontract.h"

#include <span>

/// One crosspoint of the routing matrix: a destination row and a source column.
struct Route {
    int row;
    int column;
};

// Routes to the first stereo output: the speaker, or the headphone of a model without one.
/// A single microphone, heard on both sides.
inline constexpr Route micToFirstOutput[] = {{64, 0}, {65, 1}};
/// The phone input's left and right side.
inline constexpr Route phoneToFirstOutput[] = {{64, 2}, {65, 3}};

/// Sets every crosspoint of @p routes to the linear @p gain.
void setRoutes(MixerBlock &block, std::span<const Route> routes, double gain);

/// Sets the consecutive output gains @p firstGain and @p firstGain + 1 to the linear @p gain.
void setStereoGain(MixerBlock &block, int firstGain, double gain);

/// Puts what every model starts with into a zeroed block: all output gains and the routes between
/// the device's own channels at unity.
void seedMixer(MixerBlock &block);

#endif
