#pragma once

#include <pixelimage.h>
#include <stageprogress.h>

namespace ovtrace {

/// Smooths the image with a separable kernel, except where that would change a pixel too much.
///
/// `radius` is floored to whole pixels: below 1 nothing happens, above 5 counts as 5. A pixel
/// whose four channels together would change by more than |delta| (at most 1024) keeps its
/// colour. Column 0 and row 0 never contribute to a mean, not even to their own.
void blur(PixelImage& image, float radius, float delta, StageProgress progress = {});

} // namespace ovtrace
