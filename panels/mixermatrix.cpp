#include "mixermatrix.h"

#include <algorithm>
#include <iterator>

namespace {

constexpr double unity = 1.0;

constexpr Route commonRoutes[] = {
    {4, 0},   {5, 1},   {6, 2},   {7, 3},   {8, 4},   {9, 5},   {10, 6},  {11, 7},
    {96, 0},  {97, 1},  {128, 0}, {129, 1}, {130, 0}, {131, 1}, {160, 0}, {161, 1},
    {162, 2}, {163, 3}, {164, 4}, {165, 5}, {166, 6}, {167, 7},
};

} // namespace

void setRoutes(MixerBlock &block, std::span<const Route> routes, double gain)
{
    for (const Route &route : routes)
        block.matrix[route.row][route.column] = gain;
}

void setStereoGain(MixerBlock &block, int firstGain, double gain)
{
    block.outputGains[firstGain] = gain;
    block.outputGains[firstGain + 1] = gain;
}

void seedMixer(MixerBlock &block)
{
    std::fill(std::begin(block.outputGains), std::end(block.outputGains), unity);
    setRoutes(block, commonRoutes, unity);
}
