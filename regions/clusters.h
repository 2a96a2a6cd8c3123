#pragma once

#include "colorcounts.h"

namespace ovtrace {

/// `count` colours, or fewer, that stand for those counted: groups of similar colours are divided
/// where they spread most, then each colour joins its nearest group until that settles. Colours of
/// little opacity count as transparent.
std::vector<QRgb> clusterColors(const ColorCounts& colors, std::size_t count);

/// Of `colors` the commonest, at most `count` (1 or more): a colour is left out where a commoner
/// one is nearer than the distance that leaves so few.
std::vector<QRgb> leadingColors(const ColorCounts& colors, std::size_t count);

} // namespace ovtrace
