#pragma once

#include <array>
#include <span>

namespace ovtrace {

/// The largest blur radius, in pixels.
inline constexpr int MaxBlurRadius = 5;

/// The weights at offsets -radius .. radius, for a radius of 1 to MaxBlurRadius.
///
/// They sum only nearly to 1: every weighted sum is divided by the sum of the weights used.
std::span<const double> blurKernel(int radius);

} // namespace ovtrace
