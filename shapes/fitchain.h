#pragma once

#include "shapes/joining.h"

namespace ovtrace {

/// Lines, arcs and curves through `samples`, in their order; of a closed chain the last piece ends
/// at the very point where the first starts. Segmentation and joining in one call; see both for
/// what the ends of an open chain are. Samples with coordinates that are no numbers are left out.
std::vector<Piece> fitChain(std::span<const Sample> samples, bool closed,
                            const FitOptions& options = {}, std::optional<Point> start = {},
                            std::optional<Point> end = {});

} // namespace ovtrace
