#pragma once

#include "shapes/carrier.h"

#include <optional>
#include <span>

namespace ovtrace {

/// A place on a curve and its direction there (length 1), as the curve is run through.
struct CurveEnd {
    Point at;
    Point tangent;
};

/// The cubic Bézier curve between two ends, with their tangents, of least squared distance from
/// `samples` (in their order). Where the samples
/// do not tell the handles, each is a third of the chord. None when a sample is farther off than
/// four sigmas, or when the mean squared distance exceeds `allowed` variances.
std::optional<Piece> fittedCubic(const CurveEnd& from, const CurveEnd& to,
                                 std::span<const Sample> samples, double allowed);

/// The place and direction of a smooth curve beside `around`, by the polynomial of the third degree
/// that fits `samples` (a few on each side); `along` is its direction, roughly. None where the
/// samples do not determine it.
std::optional<CurveEnd> localEnd(std::span<const Sample> samples, Point around, Point along);

} // namespace ovtrace
