#pragma once

#include <color.h>
#include <indexgrid.h>
#include <pixelimage.h>
#include <stageprogress.h>

namespace ovtrace {

struct QuantizationOptions {
    int cycles = 0;            ///< assignments of pixels to colours
    double minColorRatio = 0.; ///< a colour with a smaller share of the pixels is drawn anew
};

/// Assigns every pixel its nearest palette colour and refines the palette, as k-means does.
///
/// Between two cycles each colour moves to the mean of its pixels (unless those are all fully
/// transparent), and a rarely used one is replaced by a random colour, except before the last
/// cycle. The distance is the sum of the absolute channel differences, alpha counting four times;
/// ties go to the lower index, and so does a pixel at a distance of 1024 or more from all.
/// Returns the indices of the last cycle (all 0 without one); `palette` is left as that cycle
/// used it. An empty palette makes no cycle run. The image is used up: its memory may become that
/// of the indices.
QuantizedImage colorquantization(PixelImage image, Palette& palette,
                                 const QuantizationOptions& options, StageProgress progress = {});

} // namespace ovtrace
