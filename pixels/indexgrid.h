#pragma once

#include "pagearray.h"

#include <QtGlobal>

#include <algorithm>
#include <cstdint>
#include <variant>

namespace ovtrace {

/// The palette index of every pixel, one cell each, inside a border of one cell all around.
///
/// Cells are as small as the palette allows, mostly bytes: the stages after quantization have so
/// much less to read. Cell (0, 0) is the upper-left border cell, the
/// pixel at column x of row y is cell (y + 1, x + 1). The border holds a value that is no index.
template <typename Cell> class CellGrid {
public:
    /// Marks the border: no pixel's index.
    static constexpr Cell Border = static_cast<Cell>(-1);
    /// So many cells can be read beyond the last one: rows are read in blocks.
    static constexpr std::size_t Padding = 64;

    /// Allocates the cells of a width x height image, all 0 but for the border.
    CellGrid(int width, int height)
        : width(width), height(height), stride(qsizetype(width) + 2),
          cells(PageMemory(bytesOf(width, height))) {
        fillBorder();
    }
    /// Takes over memory of at least bytesOf() with the cells that it holds.
    CellGrid(int width, int height, PageMemory&& memory)
        : width(width), height(height), stride(qsizetype(width) + 2), cells(std::move(memory)) {
        fillBorder();
    }

    /// What the cells of a width x height image take.
    static std::size_t bytesOf(int width, int height) {
        return ((static_cast<std::size_t>(width) + 2) * (static_cast<std::size_t>(height) + 2) +
                Padding) *
               sizeof(Cell);
    }

    /// The first cell of a row, 0 .. height + 1: the left border cell.
    Cell* rowCells(int row) {
        return cells.data() + stride * row;
    }
    const Cell* rowCells(int row) const {
        return cells.data() + stride * row;
    }

    const int width;        ///< pixels, without the border
    const int height;       ///< pixels, without the border
    const qsizetype stride; ///< cells from one row to the next

private:
    void fillBorder() {
        std::fill_n(rowCells(0), stride, Border);
        std::fill_n(rowCells(height + 1), stride, Border);
        for (int row = 1; row <= height; ++row) {
            rowCells(row)[0] = Border;
            rowCells(row)[width + 1] = Border;
        }
    }

    PageArray<Cell> cells;
};

using ByteGrid = CellGrid<std::uint8_t>;
using ShortGrid = CellGrid<std::uint16_t>;
using IntGrid = CellGrid<std::int32_t>;

/// The largest palettes whose indices fit such grids beside the border value.
inline constexpr std::size_t LargestBytePalette = ByteGrid::Border;
inline constexpr std::size_t LargestShortPalette = ShortGrid::Border;

/// Calls work.operator()<Cell>() for the smallest cells that hold the indices of that many colours.
template <typename Work> decltype(auto) withCell(std::size_t colors, const Work& work) {
    if (colors <= LargestBytePalette)
        return work.template operator()<std::uint8_t>();
    if (colors <= LargestShortPalette)
        return work.template operator()<std::uint16_t>();
    return work.template operator()<std::int32_t>();
}

/// A grid of any cell width.
using IndexGrid = std::variant<ByteGrid, ShortGrid, IntGrid>;

/// An image whose pixels are indices into a palette.
struct QuantizedImage {
    IndexGrid indices;
    int colors = 0; ///< the size of the palette; without colours the indices mean nothing
};

} // namespace ovtrace
