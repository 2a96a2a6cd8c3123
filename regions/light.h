#pragma once

#include <cstdint>

namespace ovtrace {

/// What pixels that two colours share have the mean of: the numbers that are stored (sRGB), as
/// those who draw vectors do, or the light that these stand for, as programs for photographs do.
enum class Light : std::uint8_t { Stored, Linear };

/// The light of a stored level 0 to 255, from 0 to 255 as well: the sRGB curve.
double linearLevel(int stored);

/// The stored level, not rounded, of a light; beyond 0 to 255 along the straight ends of the curve.
double storedLevel(double linear);

/// By how much the light changes with the last step up to a stored level.
double linearStep(int stored);

} // namespace ovtrace
