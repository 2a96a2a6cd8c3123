#include "segmentgrid.h"

#include "shapes/piece.h"

#include <algorithm>
#include <cmath>

namespace ovtrace {

SegmentGrid::SegmentGrid(std::span<const EdgeSegment> segments) : segments(segments) {
    if (segments.empty())
        return;
    Box all{segments.front().from, segments.front().from};
    for (const EdgeSegment& segment : segments) {
        extend(all, segment.from);
        extend(all, segment.to);
    }
    least = all.least;
    const Point size = all.greatest - all.least;
    // As many cells as segments, none smaller than a pixel.
    const auto count = double(segments.size());
    side = std::max({1.0, std::sqrt(size.x * size.y / count), (size.x + size.y) / count});
    columns = static_cast<std::size_t>(size.x / side) + 1;
    rows = static_cast<std::size_t>(size.y / side) + 1;
    fill();
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
    const auto visitRow = [&](std::size_t row, double one, double other) {
        const std::size_t end = columnOf(std::max(one, other) + Room);
        for (std::size_t column = columnOf(std::min(one, other) - Room); column <= end; ++column)
            visit(cellAt(row, column));
    };
    const std::size_t first = rowOf(up.y - Room);
    const std::size_t last = rowOf(down.y + Room);
    if (flat || first == last) {
        for (std::size_t row = first; row <= last; ++row)
            visitRow(row, up.x, down.x);
        return;
    }
    for (std::size_t row = first; row <= last; ++row) {
        const double top = least.y + double(row) * side;
        visitRow(row, xAt(top - Room), xAt(top + side + Room));
    }
}

void SegmentGrid::fill() {
    // The cells' numbers of entries, then their starts, then their ends: each moved on by what is
    // put in. Shifted by two, and in the end by one, so that one array holds all.
    starts.assign(cellCount() + 2, 0);
    for (const EdgeSegment& segment : segments)
        forEachCell(segment, [this](std::size_t cell) { ++starts[cell + 2]; });
    for (std::size_t cell = 0; cell < cellCount(); ++cell)
        starts[cell + 2] += starts[cell + 1];
    entries.resize(starts.back());
    for (std::uint32_t i = 0; i < segments.size(); ++i)
        forEachCell(segments[i], [&](std::size_t cell) { entries[starts[cell + 1]++] = i; });
}

} // namespace ovtrace
