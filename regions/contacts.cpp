#include "contacts.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace ovtrace {
namespace {

/// Pixels, far above what places are rounded by and far below what any file shows.
constexpr double Nearest = 1e-7;

bool isNear(Point place, const EdgeSegment& segment) {
    const Point along = segment.to - segment.from;
    const double size = lengthSquared(along);
    const double t =
        size > 0.0 ? std::clamp(dot(place - segment.from, along) / size, 0.0, 1.0) : 0.0;
    return lengthSquared(segment.from + along * t - place) <= Nearest * Nearest;
}

bool boxesMeet(const EdgeSegment& p, const EdgeSegment& q) {
    const auto apart = [](double a, double b, double c, double d) {
        return std::max(a, b) < std::min(c, d) - Nearest ||
               std::max(c, d) < std::min(a, b) - Nearest;
    };
    return !apart(p.from.x, p.to.x, q.from.x, q.to.x) && !apart(p.from.y, p.to.y, q.from.y, q.to.y);
}

/// Where segments with one corner in common lie upon each other: the end of the shorter.
std::optional<Point> overlap(const EdgeSegment& p, const EdgeSegment& q) {
    const bool atStart = p.start == q.start || p.start == q.end;
    const bool otherStart = atStart ? p.start == q.start : p.end == q.start;
    const Point ownEnd = atStart ? p.to : p.from;
    const Point otherEnd = otherStart ? q.to : q.from;
    if (isNear(ownEnd, q))
        return ownEnd;
    if (isNear(otherEnd, p))
        return otherEnd;
    return std::nullopt;
}

std::optional<Point> crossing(const EdgeSegment& p, const EdgeSegment& q) {
    const Point along = p.to - p.from;
    const Point across = q.to - q.from;
    const double before = cross(along, q.from - p.from);
    const double after = cross(along, q.to - p.from);
    const double one = cross(across, p.from - q.from);
    const double other = cross(across, p.to - q.from);
    if (before * after < 0.0 && one * other < 0.0)
        return p.from + along * (one / (one - other));
    for (const Point end : {q.from, q.to}) {
        if (isNear(end, p))
            return end;
    }
    for (const Point end : {p.from, p.to}) {
        if (isNear(end, q))
            return end;
    }
    return std::nullopt;
}

std::optional<Point> contact(const EdgeSegment& p, const EdgeSegment& q) {
    if (!boxesMeet(p, q))
        return std::nullopt;
    const int shared = int(p.start == q.start) + int(p.start == q.end) + int(p.end == q.start) +
                       int(p.end == q.end);
    if (shared == 0)
        return crossing(p, q);
    return shared == 1 ? overlap(p, q) : middle(p.from, p.to);
}

} // namespace

std::vector<Contact> findContacts(const SegmentGrid& grid) {
    const std::span<const EdgeSegment> segments = grid.all();
    std::vector<Contact> found;
    for (std::uint32_t i = 0; i < segments.size(); ++i) {
        if (segments[i].from == segments[i].to)
            found.push_back({i, i, segments[i].from});
    }
    for (std::size_t cell = 0; cell < grid.cellCount(); ++cell) {
        const std::span<const std::uint32_t> inside = grid.in(cell);
        for (std::size_t a = 0; a < inside.size(); ++a) {
            for (std::size_t b = a + 1; b < inside.size(); ++b) {
                if (const auto at = contact(segments[inside[a]], segments[inside[b]]))
                    found.push_back({inside[a], inside[b], *at});
            }
        }
    }
    // Pairs that have several cells in common have been found in each.
    const auto pair = [](const Contact& contact) {
        return std::pair(contact.first, contact.second);
    };
    std::stable_sort(found.begin(), found.end(),
                     [&](const Contact& a, const Contact& b) { return pair(a) < pair(b); });
    found.erase(std::unique(found.begin(), found.end(),
                            [&](const Contact& a, const Contact& b) { return pair(a) == pair(b); }),
                found.end());
    return found;
}

} // namespace ovtrace
