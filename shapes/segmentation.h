#pragma once

#include "shapes/carrier.h"

#include <limits>
#include <span>
#include <vector>

namespace ovtrace {

/// How samples are explained by lines, arcs and curves.
struct FitOptions {
    /// How far, in pixels, a shape may keep from its samples beyond what their sigma allows: how
    /// much detail is wanted. 0 wants all that the samples tell.
    double tolerance = 0.03;
    /// What a parameter of a shape costs, in units of squared sigmas: a line has two, an arc three.
    double parameterCost = 8.0;
    /// What it costs to leave a sample out beside a break, in units of squared sigmas; infinite
    /// where none may be left out.
    double skipCost = 4.0;
    /// How far, in pixels, a sample may be from its shape: for places whose error has a bound
    /// rather than a spread, such as those that are rounded to pixels.
    double mostOff = std::numeric_limits<double>::infinity();
    /// Lines meeting more sharply than this (sine of the angle) meet in a corner; others are joined
    /// tangentially. About 13 degrees.
    double smoothSine = 0.22;
    /// Whether runs of arcs that join smoothly become cubic curves where that takes fewer pieces.
    bool cubics = true;
};

/// The carriers of a chain in its order; between the last and the first of a closed chain is a
/// break like the others.
struct ChainModel {
    std::vector<Carrier> carriers;
    bool closed = false;
    /// The whole chain is one circle (the only carrier).
    bool isCircle = false;
};

/// Explains `samples` by lines and circles: dynamic programming over the places where one ends and
/// the next begins, with cost = squared error / sigma^2 + cost of parameters. Up to three samples
/// at a break may belong to neither side. Linear in the number of samples but for a window of 400.
/// Samples that are no numbers are not allowed. Empty for fewer than two samples.
ChainModel segmentChain(std::span<const Sample> samples, bool closed, const FitOptions& options);

} // namespace ovtrace
