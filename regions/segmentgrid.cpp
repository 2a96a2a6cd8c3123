#include "segmentgrid.h"

#include <algorithm>
#include <cmath>

namespace ovtrace {

SegmentGrid::SegmentGrid(std::span<const EdgeSegment> segments) : segments(segments) {
    if (segments.empty())
        return;
    Point greatest = segments.front().from;
    least = greatest;
    for (const EdgeSegment& segment : segments) {
        for (const Point end : {segment.from, segment.to}) {
            least = {std::min(least.x, end.x), std::min(least.y, end.y)};
            greatest = {std::max(greatest.x, end.x), std::max(greatest.y, end.y)};
        }
    }
    const Point size = greatest - least;
    // As many cells as segments, none smaller than a pixel.
    const auto count = double(segments.size());
    side = std::max({1.0, std::sqrt(size.x * size.y / count), (size.x + size.y) / count});
    columns = static_cast<std::size_t>(size.x / side) + 1;
    rows = static_cast<std::size_t>(size.y / side) + 1;
    fill();
}

std::size_t SegmentGrid::limited(double place, std::size_t count) {
    return place <= 0.0 ? 0 : std::min(static_cast<std::size_t>(place), count - 1);
}

/// Calls visit for each cell, with some room for what is rounded.
template <typename Visit>
void SegmentGrid::forEachCell(const EdgeSegment& segment, const Visit& visit) const {
    constexpr double Room = 1e-6;
    const Point up = segment.from.y < segment.to.y ? segment.from : segment.to;
    const Point down = segment.from.y < segment.to.y ? segment.to : segment.from;
    const bool flat = down.y - up.y <= Room;
    const auto xAt = [&](double y) {
        const double share = std::clamp((y - up.y) / (down.y - up.y), 0.0, 1.0);
        return up.x + (down.x - up.x) * share;
    };
    const std::size_t first = rowOf(up.y - Room);
    const std::size_t last = rowOf(down.y + Room);
    if (first == last) {
        const std::size_t end = columnOf(std::max(up.x, down.x) + Room);
        for (std::size_t column = columnOf(std::min(up.x, down.x) - Room); column <= end; ++column)
            visit(cellAt(first, column));
        return;
    }
    for (std::size_t row = first; row <= last; ++row) {
        const double top = least.y + double(row) * side;
        const double one = flat ? up.x : xAt(top - Room);
        const double other = flat ? down.x : xAt(top + side + Room);
        const std::size_t end = columnOf(std::max(one, other) + Room);
        for (std::size_t column = columnOf(std::min(one, other) - Room); column <= end; ++column)
            visit(cellAt(row, column));
    }
}

void SegmentGrid::fill() {
    starts.assign(cellCount() + 1, 0);
    for (const EdgeSegment& segment : segments)
        forEachCell(segment, [this](std::size_t cell) { ++starts[cell + 1]; });
    for (std::size_t cell = 0; cell < cellCount(); ++cell)
        starts[cell + 1] += starts[cell];
    entries.resize(starts.back());
    std::vector<std::size_t> next(starts.begin(), starts.end() - 1);
    for (std::uint32_t i = 0; i < segments.size(); ++i)
        forEachCell(segments[i], [&](std::size_t cell) { entries[next[cell]++] = i; });
}

} // namespace ovtrace
