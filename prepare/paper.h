#pragma once

#include "inklevels.h"

#include <cstdint>
#include <vector>

class QImage;

namespace ovtrace {

/// Brightness of the paper under a drawing, which changes slowly: known on a coarse grid.
class Paper {
public:
    /// Pixels a cell of the grid, each way.
    static constexpr int Cell = 16;

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

/// The paper: the median of each cell, then the median of the cells around it.
Paper paperOf(const InkLevels& brightness, Pace& pace);

} // namespace ovtrace
