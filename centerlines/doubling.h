#pragma once

#include "centerlineoutput.h"
#include "inklevels.h"

namespace ovtrace {

class Pace;

/// Whether strokes are so narrow (about one and a half pixels) that the ink of neighbours and of
/// junctions covers most of their pixels, and the image is small enough to be traced at twice its
/// size.
bool isNarrow(const InkLevels& ink, int threshold, Pace& pace);

/// The ink at twice the size, between pixels by a cubic through four (Keys, 1981), in whole
/// numbers.
InkLevels doubled(const InkLevels& ink, Pace& pace);

/// Takes what was found in doubled ink back to the pixels of the image.
void halve(Found& found);

} // namespace ovtrace
