#pragma once

#include "crackmap.h"
#include "labelimage.h"
#include "mapassembly.h"

#include "shapes/segmentation.h"

namespace ovtrace {

/// Fits lines and curves to all chains, puts the junctions where the curves meet and leads each
/// curve to its junctions.
ShapedChains fitChains(const PixelView& image, const LabelImage& labels, const CrackMap& cracks,
                       const FitOptions& options);

} // namespace ovtrace
