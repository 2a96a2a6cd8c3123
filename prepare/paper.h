#pragma once

#include "inklevels.h"

#include <array>
#include <cstdint>
#include <vector>

class QImage;

namespace ovtrace {

/// Brightness of the paper under a drawing, which changes slowly: known on a coarse grid.
class Paper {
public:
    /// Pixels a cell of the grid, each way.
    static constexpr int Cell = 16;

    /// Cells that cover so many pixels.
    static constexpr int cellsAlong(int pixels) {
        return (pixels + Cell - 1) / Cell;
    }

    Paper(int width, int height, std::vector<std::uint8_t> cells);

    /// The paper's brightness along row `y`, interpolated between the middles of cells.
    void row(int y, std::vector<std::uint8_t>& out) const;

private:
    int width;
    int columns;
    int rows;
    std::vector<std::uint8_t> cells;
};

/// Brightness 0 to 255 of each pixel by its darkest channel, over white where the image is
/// transparent; upside down (255 is dark) where most of the image is dark.
InkLevels brightness(const QImage& image, Pace& pace);

/// Whether most of the pixels are dark, so that light is the ink.
bool isDark(const QImage& image);

/// The level of which `rank` counted pixels lie below, or in.
std::uint8_t levelOfRank(const std::array<std::uint32_t, 256>& histogram, std::uint32_t rank);

/// The median of each cell, row by row.
std::vector<std::uint8_t> cellMedians(const InkLevels& brightness, Pace& pace);

/// The paper: the median of each cell, then the median of the cells around it.
Paper paperOf(const InkLevels& brightness, Pace& pace);

/// The paper of an image of that size from the medians of its cells, for dividing by it: exact on
/// slopes, going on under solid areas up to about 400 pixels from their rims.
Paper evenPaper(int width, int height, std::vector<std::uint8_t> medians);

} // namespace ovtrace
