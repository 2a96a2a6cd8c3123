#pragma once

#include "labelimage.h"
#include "regionoptions.h"

namespace ovtrace {

/// Gives every pixel a colour: of those given or, when there are none, of those found in the image.
///
/// Drawings have plain areas, exactly or with noise; what they do not explain, and photographs,
/// are divided into areas of similar pixels.
LabelImage findLabels(const PixelView& image, const std::vector<QRgb>& given,
                      const RegionOptions& settings);

} // namespace ovtrace
