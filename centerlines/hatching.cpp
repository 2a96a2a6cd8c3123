#include "hatching.h"

#include <algorithm>
#include <cmath>

namespace ovtrace {
namespace {

/// Cosine of the greatest angle between lines of one hatching: 1.5 degrees.
constexpr double Parallel = 0.99966;
/// Greatest distance between neighbours over their width.
constexpr double Widest = 15.0;
constexpr std::size_t Fewest = 4;

bool canBeHatch(const Stroke& stroke) {
    return !stroke.dropped && !stroke.closed && stroke.dashes.empty() && stroke.carrier.isLine() &&
           stroke.ends[0].node >= 0 && stroke.ends[1].node >= 0;
}

/// The distance of `b` from `a` on the left hand of a's direction, where they are neighbours of one
/// hatching; 0 where they are none.
double stepTo(const Stroke& a, const Stroke& b) {
    if (std::abs(dot(a.carrier.direction, b.carrier.direction)) < Parallel)
        return 0.0;
    const double step = signedDistance(a.carrier, middle(b.start(), b.finish()));
    const double width = std::max(a.width, b.width);
    if (step < width || step > Widest * width || width > 1.5 * std::min(a.width, b.width) + 0.5)
        return 0.0;
    const double p = placeAlong(a, b.start());
    const double q = placeAlong(a, b.finish());
    const double common = std::min(std::max(p, q), lengthOf(a)) - std::max(std::min(p, q), 0.0);
    return common > 0.25 * std::min(lengthOf(a), lengthOf(b)) ? step : 0.0;
}

} // namespace

void markHatching(std::vector<Stroke>& strokes) {
    std::vector<int> lines;
    for (std::size_t i = 0; i < strokes.size(); ++i)
        if (canBeHatch(strokes[i]))
            lines.push_back(static_cast<int>(i));
    const auto at = [&](int i) -> Stroke& { return strokes[static_cast<std::size_t>(i)]; };
    for (const int first : lines) {
        // From each line as far to the left as steps stay even.
        std::vector<int> row{first};
        double step = 0.0;
        while (true) {
            int next = -1;
            double nearest = 1e9;
            for (const int j : lines) {
                const double d = j == row.back() ? 0.0 : stepTo(at(row.back()), at(j));
                if (d > 0.0 && d < nearest) {
                    nearest = d;
                    next = j;
                }
            }
            if (next < 0 || (step > 0.0 && std::abs(nearest - step) > 0.15 * step + 0.3) ||
                std::find(row.begin(), row.end(), next) != row.end())
                break;
            step = nearest;
            row.push_back(next);
        }
        if (row.size() >= Fewest)
            for (const int i : row)
                at(i).hatch = true;
    }
}

} // namespace ovtrace
