#pragma once

#include <color.h>
#include <pixelimage.h>
#include <stageprogress.h>

namespace ovtrace {

/// Whether `a` is darker than `b`: by the mean of red, green and blue in whole stored units.
///
/// The division truncates toward zero, so all colours whose sums lie in -2..2 count as equal.
bool lessThanColor(const Color& a, const Color& b);

/// A palette of `count` colours that does not look at the image: from 8 colours on a regular grid
/// of opaque colours, filled up with random ones; below 8 a ramp of greys. Empty for count <= 0.
Palette generatepalette(int count, StageProgress progress = {});

/// A palette of `count` colours that occur in the image, coarsened to 16 levels a channel and
/// picked at regular steps from the darkest to the brightest. Colours repeat when the image has
/// fewer. Empty for count <= 0 or an image without pixels.
Palette samplepalette(const PixelImage& image, int count, StageProgress progress = {});

} // namespace ovtrace
