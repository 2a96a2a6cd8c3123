#pragma once

#include "inklevels.h"
#include "stroke.h"

namespace ovtrace {

/// How far beyond its end (0 start, 1 end) the ink of a stroke ends, in pixels: where along its
/// carrier it falls to half of the stroke's usual ink. Below 0 where it ends before. Looks from
/// `inside` pixels before the end to at most `most` pixels beyond it.
double inkEnd(const InkLevels& ink, const Stroke& stroke, int end, double inside, double most);

} // namespace ovtrace
