#pragma once

#include "inkmask.h"

#include <cstdint>
#include <vector>

namespace ovtrace {

class Pace;

/// What tells a filled area from a wide stroke.
struct SolidRules {
    /// An area is wider than the strokes around it by this factor...
    double widerThanStrokes = 3.2;
    /// ...and less than this many times longer than wide: a pen runs on.
    double strokeLength = 5.0;
};

/// Marks the pixels of filled areas in the mask as Solid: arrow heads, dots, columns, with the
/// corners that a round pen would not reach. Crossings of many strokes may be among them.
///
/// `distance` is distanceToPaper() of the mask, `components` its ink.
void markSolids(InkMask& mask, const std::vector<std::uint8_t>& distance,
                const InkComponents& components, std::uint8_t medianRidge, const SolidRules& rules,
                Pace& pace);

} // namespace ovtrace
