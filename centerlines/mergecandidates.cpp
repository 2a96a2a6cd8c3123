#include "mergecandidates.h"

#include <algorithm>

namespace ovtrace {
namespace {

/// Widths of one pen differ by less: by a share, and by pixels.
constexpr double OnePenShare = 1.45;
constexpr double OnePenSlack = 0.8;
constexpr double Step = PointGrid::Cell / 2.0;

/// The greatest width that is like `width`.
double widestLike(double width) {
    return OnePenShare * width + OnePenSlack;
}

/// How far beside a line or a circle both ends of a stroke may lie that is one with it.
double reachOf(const Stroke& stroke) {
    return (stroke.carrier.isLine() ? 2.0 : 3.0) * mergeReach(widestLike(stroke.width));
}

} // namespace

bool likeWidths(double a, double b) {
    return std::max(a, b) < widestLike(std::min(a, b));
}

double mergeReach(double width) {
    return width + 1.0;
}

double mergeGap(double a, double b, double lengths) {
    return std::max(8.0 * std::max(a, b), lengths);
}

MergeCandidates::MergeCandidates(const std::vector<Stroke>& strokes, int width, int height)
    : strokes(strokes), ends{PointGrid(width, height), {}}, lines{PointGrid(width, height), {}},
      foundFor(strokes.size(), 0) {
    ends.readFor.assign(ends.grid.cellCount(), 0);
    lines.readFor.assign(lines.grid.cellCount(), 0);
    for (const Stroke& stroke : strokes)
        if (!stroke.dropped && !stroke.carrier.isLine())
            longestArc = std::max(longestArc, lengthOf(stroke));
    for (std::size_t i = 0; i < strokes.size(); ++i)
        if (!strokes[i].dropped)
            grew(static_cast<int>(i));
}

double MergeCandidates::extensionOf(const Stroke& stroke) const {
    const double length = lengthOf(stroke);
    const double width = widestLike(stroke.width);
    // The longer of two lines tells where the other one lies; of arcs it may be either.
    if (!stroke.carrier.isLine())
        return mergeGap(stroke.width, width, length + longestArc) + Step;
    // A gap is measured along the other line, which has nearly the same direction.
    return mergeGap(stroke.width, width, 2.0 * length) / LineAgreement + reachOf(stroke) + Step;
}

std::vector<Point> MergeCandidates::pointsOfExtended(const Stroke& stroke) const {
    const double length = lengthOf(stroke);
    double more = extensionOf(stroke);
    if (!stroke.carrier.isLine())
        more = std::min(more, (circumferenceOf(stroke) - length) / 2.0);
    const double margin = reachOf(stroke) + Step;
    std::vector<Point> points;
    double d = -more;
    while (d < length + more + Step) {
        const Point p = beyond(stroke, 0, -d);
        if (ends.grid.holds(p, margin))
            points.push_back(p);
        d += Step;
    }
    return points;
}

void MergeCandidates::lookAt(int i) {
    lookedAt = i;
    ++look;
    found.clear();
}

/// A stroke that grows asks again and again for what lies along it: cells are read once.
void MergeCandidates::collect(Layer& layer, Point p, double reach) {
    layer.grid.forEachCell(p, reach, [&](std::size_t index, std::vector<int>& cell) {
        if (layer.readFor[index] == look)
            return;
        layer.readFor[index] = look;
        read += cell.size();
        std::erase_if(cell, [&](int j) { return strokes[static_cast<std::size_t>(j)].dropped; });
        for (const int j : cell) {
            int& foundIn = foundFor[static_cast<std::size_t>(j)];
            if (foundIn != look)
                found.push_back(j);
            foundIn = look;
        }
    });
}

const std::vector<int>& MergeCandidates::of(int i) {
    if (i != lookedAt)
        lookAt(i);
    const auto isDropped = [&](int j) { return strokes[static_cast<std::size_t>(j)].dropped; };
    std::erase_if(found, isDropped);
    const auto known = static_cast<std::ptrdiff_t>(found.size());
    const Stroke& stroke = strokes[static_cast<std::size_t>(i)];
    const double reach = reachOf(stroke) + Step / 2.0;
    for (const Point& p : pointsOfExtended(stroke))
        collect(ends, p, reach);
    if (stroke.carrier.isLine())
        for (const StrokeEnd& end : stroke.ends)
            collect(lines, end.at, reach);
    std::sort(found.begin() + known, found.end());
    std::inplace_merge(found.begin(), found.begin() + known, found.end());
    return found;
}

void MergeCandidates::grew(int i) {
    // What was read of the grids holds as long as nothing but the stroke itself is added.
    if (i != lookedAt)
        lookedAt = -1;
    const Stroke& stroke = strokes[static_cast<std::size_t>(i)];
    for (const StrokeEnd& end : stroke.ends)
        ends.grid.add(i, end.at);
    if (stroke.carrier.isLine())
        for (const Point& p : pointsOfExtended(stroke))
            lines.grid.add(i, p);
    else
        longestArc = std::max(longestArc, lengthOf(stroke));
}

} // namespace ovtrace
