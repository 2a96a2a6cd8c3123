#pragma once

#include "inkmask.h"

#include <cstdint>
#include <vector>

namespace ovtrace {

class Pace;

/// Thirds of a pixel from the middle of each ink pixel to the nearest paper's middle, by chamfer
/// steps of 3 and 4 (within 6 % of the true distance); 255 stands for all that is further. In the
/// layout of the mask.
std::vector<std::uint8_t> distanceToPaper(const InkMask& mask, Pace& pace);

/// Half the width in pixels of a stroke whose middle has this distance: the edge lies half a pixel
/// before the paper's middle, and the middle of an even width between two pixels.
inline double halfWidthAt(std::uint8_t distance) {
    return distance / 3.0 - 0.25;
}

/// The median distance over the ridges of the ink: that of the middles of its strokes, each
/// pixel of length counted once. 0 without ink.
std::uint8_t medianRidge(const InkMask& mask, const std::vector<std::uint8_t>& distance,
                         Pace& pace);

} // namespace ovtrace
