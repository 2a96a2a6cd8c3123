#pragma once

#include "shapes/segmentation.h"

#include <span>

namespace ovtrace {

/// Makes regular what the samples do not tell from regular: lines along the axes and at 45 degrees;
/// lines of one chain parallel and at right angles; whole circles concentric and of equal radius. A
/// change is made where it adds no more than `allowed` to the squared error of a carrier, in units
/// of its variances (9: three sigmas), and lines turn about the middle of their samples. To be done
/// before the carriers are joined.
void regularise(std::span<ChainModel> models, double allowed = 9.0);

} // namespace ovtrace
