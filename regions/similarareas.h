#pragma once

#include "labelimage.h"

namespace ovtrace {

/// How an image without plain colours is divided.
struct AreaOptions {
    /// Areas are merged at least as long as there are more.
    std::size_t mostAreas = 3000;
    /// What a pixel of boundary has to be worth: by how much, in squared steps of the channels, it
    /// has to lessen the error of showing each area in its mean colour. 100: a line one pixel wide
    /// has to differ by 14 steps of 255 from what surrounds it, a large area by less.
    double detail = 100.0;
    std::size_t mostColors = 64;
};

/// Divides an image into areas of similar pixels, and shows them in groups of their mean colours:
/// LabelImage::plainColors is 0.
///
/// Neighbours are merged in the order of what their common boundary is worth, the growth of the
/// squared error divided by the boundary's length (G. Koepfler, C. Lopez, J.-M. Morel, "A
/// multiscale algorithm for image segmentation by variational method", SIAM J. Numer. Anal. 31
/// (1994) 282-299).
LabelImage labelSimilarAreas(const PixelView& image, const AreaOptions& options);

} // namespace ovtrace
