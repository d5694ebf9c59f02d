#ifndef MIXERMATRIX_H
#define MIXERMATRIX_H

#include "vesmoracontract.h"

#include <span>

/// One crosspoint of the routing matrix: a destination row and a source column.
struct Route {
    int row;
    int column;
};

/// Sets every crosspoint of @p routes to the linear @p gain.
void setRoutes(MixerBlock &block, std::span<const Route> routes, double gain);

/// Sets the consecutive output gains @p firstGain and @p firstGain + 1 to the linear @p gain.
void setStereoGain(MixerBlock &block, int firstGain, double gain);

/// Puts what every model starts with into a zeroed block: all output gains and the routes between
/// the device's own channels at unity.
void seedMixer(MixerBlock &block);

#endif
