#include "skew.h"

#include "pace.h"

#include <QImage>

#include <algorithm>
#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

namespace ovtrace {
namespace {

constexpr double LargestSlope = 0.2;
/// Points that are looked at: enough for a page of text, and a fraction of a second.
constexpr std::size_t MostPoints = 100000;
/// Pixels a bin of the first, coarse profile; a power of two.
constexpr double CoarseBin = 8.0;
/// How much the best profile must stand out from the usual one to be that of lines.
constexpr double LeastPeak = 1.3;

/// A place where ink begins: along a column for lines across, along a row for upright ones. Half
/// pixels from the image's middle.
struct EdgePoint {
    int along;
    int across;
};

bool isInk(const uchar* row, int x) {
    return (row[x / 8] >> (7 - x % 8) & 1) == 0;
}

std::vector<EdgePoint> thinnedOut(std::vector<EdgePoint> points) {
    if (points.size() <= MostPoints)
        return points;
    for (std::size_t i = 0; i < MostPoints; ++i)
        points[i] = points[i * points.size() / MostPoints];
    points.resize(MostPoints);
    return points;
}

/// Where ink begins below paper: upper edges of lines across.
std::vector<EdgePoint> upperEdges(const QImage& page) {
    std::vector<EdgePoint> points;
    for (int y = 1; y < page.height(); ++y) {
        const uchar* above = page.constScanLine(y - 1);
        const uchar* row = page.constScanLine(y);
        for (int x = 0; x < page.width(); ++x) {
            if (isInk(row, x) && !isInk(above, x))
                points.push_back({2 * x - page.width(), 2 * y - page.height()});
        }
    }
    return thinnedOut(std::move(points));
}

/// Where ink begins to the right of paper: edges of upright lines, turned so that the same slope
/// makes both straight.
std::vector<EdgePoint> leftEdges(const QImage& page) {
    std::vector<EdgePoint> points;
    for (int y = 0; y < page.height(); ++y) {
        const uchar* row = page.constScanLine(y);
        for (int x = 1; x < page.width(); ++x) {
            if (isInk(row, x) && !isInk(row, x - 1))
                points.push_back({2 * y - page.height(), page.width() - 2 * x});
        }
    }
    return thinnedOut(std::move(points));
}

/// How sharply points gather in lines of a slope: the sum of the squares of how many lie in each
/// bin across them.
class Profile {
public:
    Profile(std::vector<EdgePoint> points, double reach) : points(std::move(points)), reach(reach) {
    }

    double sharpness(double slope, double bin) {
        // Points across lines are no farther from the middle than the page and its slant reach.
        const double offset = reach * (1.0 + LargestSlope) / bin + 2.0;
        counts.assign(static_cast<std::size_t>(2.0 * offset) + 2, 0.0);
        for (const EdgePoint& point : points) {
            const double place = (point.across - slope * point.along) / (2.0 * bin) + offset;
            const auto below = static_cast<std::size_t>(place);
            // Between two bins, so that steps of whole pixels are no reason to prefer a slope.
            const double share = place - static_cast<double>(below);
            counts[below] += 1.0 - share;
            counts[below + 1] += share;
        }
        double sum = 0.0;
        for (const double count : counts)
            sum += count * count;
        return sum;
    }

private:
    std::vector<EdgePoint> points;
    double reach;
    std::vector<double> counts;
};

double medianOf(std::vector<double> values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

/// Profiles of lines across and of upright ones, each measured by what it usually is.
class PageProfiles {
public:
    PageProfiles(const QImage& page, double reach)
        : across(upperEdges(page), reach), upright(leftEdges(page), reach) {
    }

    double sharpness(double slope, double bin) {
        return across.sharpness(slope, bin) * acrossWeight +
               upright.sharpness(slope, bin) * uprightWeight;
    }

    /// The slope of the sharpest of all profiles, if it stands out.
    std::optional<double> coarseSlope(double step, Pace& pace) {
        const int steps = static_cast<int>(LargestSlope / step);
        std::vector<double> acrossAll;
        std::vector<double> uprightAll;
        for (int i = -steps; i <= steps; ++i) {
            acrossAll.push_back(across.sharpness(i * step, CoarseBin));
            uprightAll.push_back(upright.sharpness(i * step, CoarseBin));
            pace.step(i + steps, 2.0 * steps);
        }
        acrossWeight = 1.0 / std::max(1.0, medianOf(acrossAll));
        uprightWeight = 1.0 / std::max(1.0, medianOf(uprightAll));
        std::size_t best = 0;
        const auto sum = [&](std::size_t i) {
            return acrossAll[i] * acrossWeight + uprightAll[i] * uprightWeight;
        };
        for (std::size_t i = 1; i < acrossAll.size(); ++i)
            best = sum(i) > sum(best) ? i : best;
        const bool standsOut = acrossAll[best] * acrossWeight >= LeastPeak ||
                               uprightAll[best] * uprightWeight >= LeastPeak;
        return standsOut ? std::optional((static_cast<int>(best) - steps) * step) : std::nullopt;
    }

    /// The sharpest of the slopes up to two steps away.
    double sharpestNear(double slope, double step, double bin) {
        double best = 0.0;
        double found = slope;
        for (int i = -2; i <= 2; ++i) {
            const double near = std::clamp(slope + i * step, -LargestSlope, LargestSlope);
            const double here = sharpness(near, bin);
            if (here > best) {
                best = here;
                found = near;
            }
        }
        return found;
    }

private:
    Profile across;
    Profile upright;
    double acrossWeight = 1.0;
    double uprightWeight = 1.0;
};

/// The top of the parabola through three sharpnesses, in steps from the middle one.
double topOf(double before, double middle, double after) {
    const double bend = before - 2.0 * middle + after;
    return bend < 0.0 ? std::clamp((before - after) / (2.0 * bend), -0.5, 0.5) : 0.0;
}

} // namespace

double skewOf(const QImage& page, Pace& pace) {
    const double reach = std::max(page.width(), page.height()) / 2.0;
    PageProfiles profiles(page, reach);
    // A step moves the ends of a line as long as the page by half a bin.
    const auto stepOf = [reach](double bin) { return bin / 2.0 / reach; };
    const std::optional<double> coarse = profiles.coarseSlope(stepOf(CoarseBin), pace);
    if (!coarse)
        return 0.0;
    double slope = *coarse;
    for (double bin = CoarseBin / 2.0; bin >= 1.0; bin /= 2.0)
        slope = profiles.sharpestNear(slope, stepOf(bin), bin);
    const double step = stepOf(1.0);
    slope += step * topOf(profiles.sharpness(slope - step, 1.0), profiles.sharpness(slope, 1.0),
                          profiles.sharpness(slope + step, 1.0));
    const bool isStraight = std::max(slope, -slope) * 2.0 * reach < 1.0;
    return isStraight ? 0.0 : slope;
}

} // namespace ovtrace
