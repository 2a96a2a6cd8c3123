#pragma once

#include "labelimage.h"

#include <cstdint>
#include <vector>

namespace ovtrace {

/// The connected areas of a label image. Pixels are connected across edges, and across a corner
/// where the other two pixels are not.
struct RegionGrid {
    static constexpr std::int32_t Outside = -1; ///< transparent
    static constexpr std::int32_t Beyond = -2;  ///< not in the image

    int width = 0;
    int height = 0;
    /// The area of each pixel, row by row: numbered in raster order of their first pixels.
    std::vector<std::int32_t> ids;
    std::vector<std::uint16_t> labels;     ///< of the areas
    std::vector<std::uint32_t> pixelCount; ///< of the areas
    /// The corners (y * (width + 1) + x) where two colours meet crosswise and the lower-left and
    /// the upper-right pixel are connected; in order.
    std::vector<std::uint64_t> risingJoins;

    /// The area at a place that may lie beyond the image.
    std::int32_t at(int x, int y) const {
        if (x < 0 || y < 0 || x >= width || y >= height)
            return Beyond;
        return ids[static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
                   static_cast<std::size_t>(x)];
    }
};

/// Finds the areas. Linear in pixels but for the corners where colours meet crosswise.
RegionGrid findRegions(const PixelView& image, const LabelImage& labels);

} // namespace ovtrace
