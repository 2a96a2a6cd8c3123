#pragma once

#include "shapes/segmentation.h"

namespace ovtrace {

/// The samples of a chain with the weights that fits and their search give them.
struct Weighted {
    std::vector<Sample> samples;
    std::vector<double> weights;
    std::vector<double> skipCosts;
    /// The length of the polygon through the samples up to each.
    std::vector<double> lengths;
    bool closed = false;
    double mostOff = std::numeric_limits<double>::infinity(); ///< pixels, as in FitOptions

    /// Whether a shape of this radius can run from sample to sample: a line or a shallow arc is not
    /// much shorter than the way there. What runs back beside itself is not one shape.
    [[nodiscard]] bool advances(int first, int last, double radius) const;

    /// Whether no sample from `first` to `last` is too far from the line or the circle.
    [[nodiscard]] bool keepsToLine(Point on, Point direction, int first, int last) const;
    [[nodiscard]] bool keepsToCircle(Point centre, double radius, int first, int last) const;
    [[nodiscard]] bool keepsTo(const Carrier& carrier) const;

    [[nodiscard]] int size() const {
        return static_cast<int>(samples.size());
    }
    [[nodiscard]] Point at(int index) const {
        return samples[static_cast<std::size_t>(index)].at;
    }
    [[nodiscard]] double weight(int index) const {
        return weights[static_cast<std::size_t>(index)];
    }
    [[nodiscard]] double skipCost(int index) const {
        return skipCosts[static_cast<std::size_t>(index)];
    }
};

/// Rotated so that sample `start` comes first. Sigmas hold the tolerance's share from here on.
Weighted weighted(std::span<const Sample> samples, int start, bool closed,
                  const FitOptions& options);

/// How much the curve changes at a sample, in sigmas: the third difference across the curve, which
/// is 0 on lines and nearly 0 on circles.
double change(const Weighted& data, int index, bool closed);

/// The line or the circle that fits the samples from `first` to `last` best; a line where they
/// determine no circle.
Carrier fitted(const Weighted& data, int first, int last, bool isArc);

} // namespace ovtrace
