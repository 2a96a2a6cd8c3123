#pragma once

#include "shapes/carrier.h"

#include <span>

namespace ovtrace {

/// The end of a chain at a junction: the carrier that leads there, and its last good sample.
struct JunctionEnd {
    Carrier carrier;
    Point last;
};

/// Where chains meet: the point of least squared distance from their carriers, each in units of its
/// own uncertainty there, and from `around` (the middle of the pixel corner, say) with a standard
/// deviation of `spread` pixels, which decides where carriers are parallel. Two that run through in
/// one line count as what they are: the third ends on them.
Point meetingPoint(std::span<const JunctionEnd> ends, Point around, double spread);

/// The standard deviation, in pixels, of the place of a carrier across itself, at `place`; larger
/// the farther it lies from the samples.
double uncertaintyAt(const Carrier& carrier, Point place);

} // namespace ovtrace
