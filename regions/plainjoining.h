#pragma once

#include "shapes/segmentation.h"

#include <optional>
#include <span>
#include <vector>

namespace ovtrace {

/// A chain whose carriers do not go together as a whole: those that many exact places support stay,
/// and straight pieces lead through the places between them. Corners of two such carriers stay
/// where the places between them agree.
///
/// `samples` are those that the model was made from; `near` are the same beside the edges between
/// pixels. The ends of an open chain are `start` and `end`. Nothing is returned when no carrier is
/// supported so.
std::vector<Piece> joinPlainly(const ChainModel& model, std::span<const Sample> samples,
                               std::span<const Sample> near, std::optional<Point> start,
                               std::optional<Point> end);

} // namespace ovtrace
