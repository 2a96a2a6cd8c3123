#pragma once

#include "colorcounts.h"
#include "labelimage.h"

namespace ovtrace {

/// What the plain areas of an image tell about its colours.
struct PureColors {
    /// The colours of blocks of two by two equal pixels, with the number of such blocks;
    /// anti-aliasing makes none (but for lines that lie on the grid).
    ColorCounts blocks;
    std::uint64_t blockCount = 0; ///< blocks of equal pixels, of all colours
    std::uint64_t placeCount = 0; ///< places where a block could be
};

PureColors findPureColors(const PixelView& image);

/// The colours of blocks without those that mixes happen to make. These lie between two colours of
/// more blocks, and have few blocks for their pixels, as in files of few colours, or none wider
/// than two pixels and more pixels along edges: where thin lines run between two rows.
ColorCounts withoutMixes(const PixelView& image, const ColorCounts& blocks,
                         Light light = Light::Stored);

/// All colours with the number of their pixels; counting ends when there are more than `most`.
ColorCounts countColors(const PixelView& image, std::size_t most);

} // namespace ovtrace
