#pragma once

#include "shapes/weightedsamples.h"

#include <optional>

namespace ovtrace {

/// Samples at a break that belong to neither side: the corner of a pixel's area is cut over about
/// one pixel on each side, which three samples cover.
constexpr int mostSkipped = 3;
/// Where nothing happens, every so many samples may be a break (twice as many where places are
/// rounded to pixels); the place is refined afterwards.
constexpr int breakStride = 6;

/// The samples that one shape explains.
struct ShapeRange {
    int first = 0;
    int last = 0; ///< included
    bool isArc = false;
};

struct BrokenChain {
    std::vector<ShapeRange> ranges; ///< in order, at least one
    double cost = 0.0;
};

/// Where the shapes of an open chain begin and end, by dynamic programming over the places where
/// one ends and the next begins. None where no shapes explain the samples. `strict`: a shape needs
/// one sample more than determine it.
std::optional<BrokenChain> searchBreaks(const Weighted& data, const FitOptions& options,
                                        bool strict);

} // namespace ovtrace
