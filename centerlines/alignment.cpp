#include "alignment.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>

namespace ovtrace {
namespace {

/// Half of the square root of two.
constexpr double Diagonal = 0.70710678118654752;
/// Directions of a level frame; the first two are those of its sides.
constexpr std::array<Point, 4> Axes{
    {{1.0, 0.0}, {0.0, 1.0}, {Diagonal, Diagonal}, {Diagonal, -Diagonal}}};
constexpr std::size_t Sides = 2;
/// Tangent of the greatest lean of a page, and of a line that may be aligned: 3 and 1.5 degrees.
constexpr double MostLean = 0.0524;
constexpr double MostTurn = 0.0262;
/// Standard deviations, and pixels at the ends of a line, that are no lean.
constexpr double Sure = 2.5;
constexpr double EndSlack = 0.04;
/// Neighbouring samples share ink: they count for half.
constexpr double Shared = 1.41421356;
/// Lines that tell how a page leans, and their share of the length of all that might.
constexpr std::size_t FewestLines = 3;
constexpr double LeastShare = 0.5;

/// How a line lies to an axis.
struct Lean {
    Stroke* line = nullptr;
    std::size_t axis = 0;
    double slope = 0.0; ///< tangent of the angle from the axis, in the sense from +x to +y
    double sigma = 0.0; ///< its standard deviation
    double length = 0.0;

    /// The greatest difference of slopes that the points cannot tell.
    double unsure() const {
        return Sure * sigma + EndSlack / (length / 2.0);
    }
};

std::optional<Lean> leanOf(Stroke& stroke) {
    if (stroke.dropped || stroke.closed || !stroke.carrier.isLine() || stroke.samples.empty())
        return std::nullopt;
    const double sigma = endDirectionSigma(stroke.carrier) * Shared;
    const double length = lengthOf(stroke);
    if (!std::isfinite(sigma) || !(length > 2.0 * stroke.width))
        return std::nullopt;
    for (std::size_t axis = 0; axis < Axes.size(); ++axis) {
        const double along = dot(Axes[axis], stroke.carrier.direction);
        const double aside = cross(Axes[axis], stroke.carrier.direction);
        if (std::abs(aside) < MostLean * std::abs(along))
            return Lean{&stroke, axis, aside / along, sigma, length};
    }
    return std::nullopt;
}

/// The slope that half of the length lies below.
double medianSlope(std::vector<Lean> leans) {
    std::ranges::stable_sort(leans, {}, &Lean::slope);
    double whole = 0.0;
    for (const Lean& lean : leans)
        whole += lean.length;
    double part = 0.0;
    for (const Lean& lean : leans)
        if ((part += lean.length) >= whole / 2.0)
            return lean.slope;
    return 0.0;
}

/// How the sides of the drawing lean; 0 where they are level within what can be told, or where
/// there is no frame.
double leanOfPage(const std::vector<Lean>& leans) {
    std::vector<Lean> sides;
    std::ranges::copy_if(leans, std::back_inserter(sides),
                         [](const Lean& lean) { return lean.axis < Sides; });
    if (sides.size() < FewestLines)
        return 0.0;
    const double middle = medianSlope(sides);
    double weight = 0.0;
    double sum = 0.0;
    double length = 0.0;
    double longest = 0.0;
    double whole = 0.0;
    std::size_t count = 0;
    for (const Lean& side : sides) {
        whole += side.length;
        if (std::abs(side.slope - middle) > side.unsure())
            continue;
        const double w = 1.0 / (side.unsure() * side.unsure());
        weight += w;
        sum += w * side.slope;
        length += side.length;
        longest = std::max(longest, side.length);
        ++count;
    }
    if (count < FewestLines || length < LeastShare * whole)
        return 0.0;
    const double slope = sum / weight;
    return std::abs(slope) < 1.0 / std::sqrt(weight) + EndSlack / longest ? 0.0 : slope;
}

void turn(Stroke& stroke, Point direction) {
    Carrier& line = stroke.carrier;
    line.direction = dot(line.direction, direction) < 0.0 ? -direction : direction;
    for (StrokeEnd& end : stroke.ends)
        end.at = projected(line, end.at);
    stroke.aligned = true;
}

} // namespace

void alignLines(std::vector<Stroke>& strokes) {
    std::vector<Lean> leans;
    for (Stroke& stroke : strokes)
        if (const auto lean = leanOf(stroke))
            leans.push_back(*lean);
    const double page = leanOfPage(leans);
    for (const Lean& lean : leans) {
        if (std::abs(lean.slope - page) > std::min(lean.unsure(), MostTurn))
            continue;
        const Point axis = Axes[lean.axis];
        turn(*lean.line, page == 0.0 ? axis : unit(axis + turnedQuarter(axis) * page));
    }
}

} // namespace ovtrace
