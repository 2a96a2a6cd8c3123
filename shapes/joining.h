#pragma once

#include "shapes/segmentation.h"

#include <optional>

namespace ovtrace {

/// Puts the carriers of `model` together: corners where they meet, tangents where they meet at a
/// shallow angle, a cap across the end of two nearly parallel sides. Each piece starts at the very
/// point where the one before ends; of a closed chain the first starts where the last ends.
///
/// `samples` are those that the model was made from. The ends of an open chain are `start` and
/// `end` when given (a junction, the rim of an image); else the outermost samples, put onto their
/// carriers.
std::vector<Piece> joinChain(const ChainModel& model, std::span<const Sample> samples,
                             const FitOptions& options, std::optional<Point> start = {},
                             std::optional<Point> end = {});

/// Two half circles, the first beginning left of the centre.
std::vector<Piece> wholeCircle(const Carrier& circle);

/// Straight pieces through the samples: what is left where nothing can be fitted.
std::vector<Piece> polygonThrough(std::span<const Sample> samples, bool closed,
                                  std::optional<Point> start = {}, std::optional<Point> end = {});

} // namespace ovtrace
