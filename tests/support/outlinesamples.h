#pragma once

#include "shapes/carrier.h"

#include <cmath>
#include <numbers>
#include <random>
#include <span>
#include <vector>

/// Drawings for tests of fitting, and the samples that exact pixel coverage gives of their edges.

/// Dense points of an outline, to be read as a fine polygon.
using Outline = std::vector<ovtrace::Point>;

inline void appendLine(Outline& outline, ovtrace::Point from, ovtrace::Point to) {
    const int count = 1 + static_cast<int>(ovtrace::distance(from, to) * 64.0);
    for (int k = 0; k < count; ++k)
        outline.push_back(from + (to - from) * (static_cast<double>(k) / count));
}

/// Angles in degrees, from +x to +y.
inline void appendArc(Outline& outline, ovtrace::Point centre, double radius, double from,
                      double to) {
    const double degree = std::numbers::pi / 180.0;
    const int count = 1 + static_cast<int>(std::abs(to - from) * degree * radius * 64.0);
    for (int k = 0; k < count; ++k) {
        const double angle = (from + (to - from) * k / count) * degree;
        outline.push_back(centre + ovtrace::Point{std::cos(angle), std::sin(angle)} * radius);
    }
}

inline Outline polygonOutline(std::span<const ovtrace::Point> corners) {
    Outline outline;
    for (std::size_t k = 0; k < corners.size(); ++k)
        appendLine(outline, corners[k], corners[(k + 1) % corners.size()]);
    return outline;
}

inline Outline circleOutline(ovtrace::Point centre, double radius) {
    Outline outline;
    appendArc(outline, centre, radius, 0.0, 360.0);
    return outline;
}

/// The centre, half the sides, the radius of the corners and the sine and cosine of its turn.
inline Outline roundedRectangle(ovtrace::Point centre, ovtrace::Point half, double radius,
                                double degrees) {
    Outline outline;
    const double x = half.x - radius;
    const double y = half.y - radius;
    appendLine(outline, {-x, -half.y}, {x, -half.y});
    appendArc(outline, {x, -y}, radius, -90.0, 0.0);
    appendLine(outline, {half.x, -y}, {half.x, y});
    appendArc(outline, {x, y}, radius, 0.0, 90.0);
    appendLine(outline, {x, half.y}, {-x, half.y});
    appendArc(outline, {-x, y}, radius, 90.0, 180.0);
    appendLine(outline, {-half.x, y}, {-half.x, -y});
    appendArc(outline, {-x, -y}, radius, 180.0, 270.0);
    const double angle = degrees * std::numbers::pi / 180.0;
    for (ovtrace::Point& p : outline)
        p = centre + ovtrace::Point{p.x * std::cos(angle) - p.y * std::sin(angle),
                                    p.x * std::sin(angle) + p.y * std::cos(angle)};
    return outline;
}

/// A star with `tips` points between two radii.
inline std::vector<ovtrace::Point> starCorners(ovtrace::Point centre, double outer, double inner,
                                               int tips, double degrees) {
    std::vector<ovtrace::Point> corners;
    for (int k = 0; k < 2 * tips; ++k) {
        const double angle = (degrees + 180.0 * k / tips) * std::numbers::pi / 180.0;
        corners.push_back(centre + ovtrace::Point{std::cos(angle), std::sin(angle)} *
                                       (k % 2 == 0 ? outer : inner));
    }
    return corners;
}

/// The mean place of an outline in one row or column of pixels, from where it enters it to where it
/// leaves it: what the sum of coverage across the edge says.
struct CellMean {
    double place = 0.0;
    double width = 0.0; ///< 1 where the outline runs through from side to side
};

inline CellMean cellMean(const Outline& outline, std::size_t index, bool steep) {
    const std::size_t n = outline.size();
    const auto along = [&](std::size_t k) { return steep ? outline[k % n].y : outline[k % n].x; };
    const auto across = [&](std::size_t k) { return steep ? outline[k % n].x : outline[k % n].y; };
    const auto inside = [&](std::size_t k) {
        return std::floor((along(k) + along(k + 1)) / 2.0) ==
               std::floor((along(index) + along(index + 1)) / 2.0);
    };
    std::size_t first = index;
    while (index - first < n / 2 && inside(first + n - 1))
        first = first == 0 ? n - 1 : first - 1;
    CellMean mean;
    for (std::size_t k = first, count = 0; count < n && inside(k); ++k, ++count) {
        mean.place += (along(k + 1) - along(k)) * (across(k) + across(k + 1)) / 2.0;
        mean.width += along(k + 1) - along(k);
    }
    mean.place /= mean.width;
    mean.width = std::abs(mean.width);
    return mean;
}

/// The samples of a closed outline, one in each row or column, whichever is the steeper against it.
/// Corners come out cut, as they do in images. `noise` is added across, as a Gaussian with this
/// sigma from a fixed seed.
inline std::vector<ovtrace::Sample> coverageSamples(const Outline& outline, double noise,
                                                    double sigma) {
    std::mt19937 random(7);
    std::normal_distribution<double> gauss(0.0, 1.0);
    std::vector<ovtrace::Sample> samples;
    for (std::size_t k = 0; k < outline.size(); ++k) {
        const ovtrace::Point a = outline[k];
        const ovtrace::Point d = outline[(k + 1) % outline.size()] - a;
        const bool steep = std::abs(d.y) > std::abs(d.x) * 1.001;
        const double from = steep ? a.y : a.x;
        const double middle = std::floor(steep ? a.y : a.x) + 0.5;
        // The outline crosses the middle of a row or column here.
        const double to = from + (steep ? d.y : d.x);
        const double crossed =
            (from - middle) * (to - middle) <= 0.0 && from != to ? middle : std::floor(to) + 0.5;
        if ((from - crossed) * (to - crossed) > 0.0 || from == to || to == crossed)
            continue;
        const CellMean mean = cellMean(outline, k, steep);
        if (mean.width < 0.95) {
            // Cut by a corner: the place is not known, only that the outline runs here.
            samples.push_back({a, sigma, true});
            continue;
        }
        const double place = mean.place + noise * gauss(random);
        samples.push_back({steep ? ovtrace::Point{place, crossed} : ovtrace::Point{crossed, place},
                           sigma, false});
    }
    return samples;
}
