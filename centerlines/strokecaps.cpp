#include "strokecaps.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace ovtrace {
namespace {

/// Ink over that further inside at which an end is: the edge of a blurred one.
constexpr double EdgeInk = 0.5;
constexpr double InkStep = 0.25;
/// Places beside the middle at which an end is measured, over the width.
constexpr double Aside = 0.35;
/// A half circle at Aside: 1/2 - sqrt(1/4 - Aside^2) of the width.
constexpr double HalfCircle = 0.143;
/// Width over the standard deviation of the blur at which it hides half of the rounding of an end.
constexpr double WidthOfBlur = 5.3;
/// The greatest blur that counts, of a scanner and of sampling, in pixels; that of two levels.
constexpr double GreatestBlur = 0.9;
constexpr double TwoLevelBlur = 0.45;
/// Width from which an end of a ragged image of two levels tells something: the threshold after
/// the blur has rounded narrower ones, whatever the pen.
constexpr double RaggedWidth = 4.5;
/// Uncertainty of an edge of one end in pixels, with greys and without.
constexpr double GreyEdge = 0.1;
constexpr double TwoLevelEdge = 0.35;
/// Share of the rounding below which blur has hidden it.
constexpr double LeastVisible = 0.12;
/// Standard deviations that tell nothing, and those that decide; between them ends move evenly.
constexpr double Unsure = 1.0;
constexpr double Sure = 2.0;

double cubed(double v) {
    return v * v * v;
}

/// Standard deviation of the blur that leaves `peak` ink in the middle of a stroke, at most:
/// the inverse of the error function, between places that are known.
double blurOf(double width, double peak) {
    struct Known {
        double peak;
        double blur; ///< over the width
    };
    constexpr std::array<Known, 5> Table{
        {{0.90, 0.304}, {0.95, 0.255}, {0.98, 0.215}, {0.995, 0.178}, {1.0, 0.15}}};
    std::size_t k = 1;
    while (k + 1 < Table.size() && peak > Table[k].peak)
        ++k;
    const Known& a = Table[k - 1];
    const Known& b = Table[k];
    const double part = std::clamp((peak - a.peak) / (b.peak - a.peak), 0.0, 1.0);
    return std::min(width * (a.blur + part * (b.blur - a.blur)), GreatestBlur);
}

/// Share of a half circle's rounding that blur leaves at a width.
double visible(double width, double blur) {
    return cubed(width) / (cubed(width) + cubed(WidthOfBlur * blur));
}

} // namespace

CapSample capAt(const InkLevels& ink, const Stroke& stroke, int end, Point tip) {
    const Point outward = outwardAt(stroke, end);
    const Point across = turnedQuarter(outward);
    const auto edgeAt = [&](double aside) {
        // Against the ink of the same line of pixels further inside, which blur lowers too.
        const Point from = tip + across * (aside * stroke.width);
        const auto level = [&](double d) {
            const Point p = from + outward * d;
            return ink.sample(p.x, p.y);
        };
        const double inside = -stroke.width;
        const double edge = EdgeInk * level(inside);
        double d = inside;
        double before = level(d);
        while (d < stroke.width) {
            const double after = level(d + InkStep);
            if (after < edge)
                return d + (before > after ? InkStep * (before - edge) / (before - after) : 0.0);
            before = after;
            d += InkStep;
        }
        return d;
    };
    return {stroke.width, (edgeAt(0.0) - (edgeAt(-Aside) + edgeAt(Aside)) / 2.0) / stroke.width};
}

double penRoundness(const std::vector<CapSample>& samples, const Measure& measure) {
    // The share of a half circle's rounding that explains all ends best, weighted least squares;
    // a cut end gives 0 whatever the blur, which lowers the ink beside the middle everywhere alike.
    const bool ragged = measure.ragged;
    const double edge = measure.twoLevels ? TwoLevelEdge : GreyEdge;
    double known = 0.0;
    double sum = 0.0;
    for (const CapSample& sample : samples) {
        if (ragged && sample.width < RaggedWidth)
            continue;
        const double blur = measure.twoLevels ? TwoLevelBlur : blurOf(sample.width, sample.peak);
        const double seen = ragged ? 1.0 : visible(sample.width, blur);
        if (seen < LeastVisible)
            continue;
        const double full = HalfCircle * seen;
        const double weight = sample.width * sample.width / (edge * edge);
        known += weight * full * full;
        sum += weight * full * std::clamp(sample.rounding, -HalfCircle, 2.0 * HalfCircle);
    }
    if (!(known > 0.0))
        return 0.0;
    const double share = sum / known;
    const double deviations = (share - 0.5) * std::sqrt(known);
    const double surety = std::clamp((std::abs(deviations) - Unsure) / (Sure - Unsure), 0.0, 1.0);
    return deviations > 0.0 ? surety : -surety;
}

double capDepth(double roundness, double width) {
    // What is narrower than its blur ends where the mean over the half circle does: pi / 8 of it.
    const double round = width * std::clamp(0.34 + 0.04 * width, 0.39, 0.5);
    const double unknown = std::min(0.27 * width, 0.95);
    return roundness > 0.0 ? unknown + roundness * (round - unknown) : unknown * (1.0 + roundness);
}

} // namespace ovtrace
