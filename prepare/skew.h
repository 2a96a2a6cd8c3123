#pragma once

class QImage;

namespace ovtrace {

class Pace;

/// By how much the lines of a page rise to the wrong side: the slope (dy/dx, y down) of what ought
/// to be horizontal, text lines and ruled lines alike; what ought to be vertical counts as well.
/// `page` is black and white of 1 bit, 0 for ink.
///
/// Up to a slope of 0.2 (11 degrees) is found. 0 when nothing points in one direction, or when the
/// page is straight to within a pixel from one end to the other.
double skewOf(const QImage& page, Pace& pace);

} // namespace ovtrace
