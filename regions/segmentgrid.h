#pragma once

#include "cellplace.h"

#include "shapes/point.h"

#include <cstdint>
#include <span>
#include <vector>

namespace ovtrace {

/// A straight part of a boundary. Parts that follow one another, or that meet in a junction, have
/// the same number there.
struct EdgeSegment {
    Point from;
    Point to;
    std::uint32_t boundary = 0;
    std::uint32_t start = 0; ///< number of the corner at `from`
    std::uint32_t end = 0;   ///< number of the corner at `to`
};

/// Segments, which have to live on, by the square cells that they pass.
class SegmentGrid {
public:
    explicit SegmentGrid(std::span<const EdgeSegment> segments);

    std::span<const EdgeSegment> all() const {
        return segments;
    }
    std::size_t cellCount() const {
        return columns * rows;
    }
    /// The indices of the segments that pass a cell.
    std::span<const std::uint32_t> in(std::size_t cell) const {
        return std::span(entries).subspan(starts[cell], starts[cell + 1] - starts[cell]);
    }
    /// The cells by row and column; places beyond all segments have the last ones.
    std::size_t cellAt(std::size_t row, std::size_t column) const {
        return row * columns + column;
    }
    std::size_t columnOf(double x) const {
        return cellOf((x - least.x) / side, columns);
    }
    std::size_t rowOf(double y) const {
        return cellOf((y - least.y) / side, rows);
    }
    /// The x of a column's left side.
    double leftOf(std::size_t column) const {
        return least.x + double(column) * side;
    }

private:
    template <typename Visit>
    void forEachCell(const EdgeSegment& segment, const Visit& visit) const;
    void fill();

    std::span<const EdgeSegment> segments;
    Point least;
    double side = 1.0; ///< of a cell, in pixels
    std::size_t columns = 0;
    std::size_t rows = 0;
    /// Of each cell's entries, and their end. There are fewer than 2^32: more would take 16 GB.
    std::vector<std::uint32_t> starts;
    std::vector<std::uint32_t> entries;
};

} // namespace ovtrace
