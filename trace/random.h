#pragma once

#include <color.h>

namespace ovtrace {

/// Restarts the process-wide sequence of random draws.
void seedRandom(unsigned seed);

/// A random number in [0, 1], one of 32768 steps.
///
/// The draws follow one sequence on every platform: that of the C runtime of
/// Windows, so that a drawing comes out alike everywhere. Until seedRandom() is
/// called, a process starts from seed 1 (41, 18467, 6334, 26500, 19169, ...).
double random();

/// A colour of four random channels, drawn in the order red, green, blue, alpha.
Color randomColor();

} // namespace ovtrace
