#pragma once

#include "crackmap.h"
#include "labelimage.h"
#include "mapassembly.h"

#include "shapes/segmentation.h"

#include <functional>
#include <optional>

namespace ovtrace {

/// Fits lines and curves to all chains, puts the junctions where the curves meet and leads each
/// curve to its junctions. `report` learns which fraction is done, often, and says whether to go
/// on; nothing is returned when it says no.
std::optional<ShapedChains> fitChains(const PixelView& image, const LabelImage& labels,
                                      const CrackMap& cracks, const FitOptions& options,
                                      const std::function<bool(double)>& report);

} // namespace ovtrace
