#pragma once

class QImage;

namespace ovtrace {

class Pace;

/// The image turned about its middle so that lines of this slope (dy/dx, y down) become horizontal.
///
/// It is as much larger as its corners need; what lies beyond the image takes the middle colour of
/// its rim. 32 bits a pixel, interpolated by cubic convolution.
QImage straightened(const QImage& image, double slope, Pace& pace);

} // namespace ovtrace
