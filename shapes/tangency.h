#pragma once

#include "shapes/carrier.h"

namespace ovtrace {

/// The circle through `samples` that is tangent to the lines `before` and `after` (either may be
/// null), run through in their direction: the arc of a rounded corner. None where there is no such
/// circle near `circle`, or where it fits worse than `circle` by more than `allowed` (in squared
/// sigmas).
std::optional<Carrier> tangentCircle(const Carrier& circle, const Carrier* before,
                                     const Carrier* after, std::span<const Sample> samples,
                                     double allowed);

/// The sum of squared distances of `samples` from the carrier, in units of their variances.
double chiSquare(const Carrier& carrier, std::span<const Sample> samples);

} // namespace ovtrace
