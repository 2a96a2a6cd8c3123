#include "purecolors.h"

namespace ovtrace {

PureColors findPureColors(const PixelView& image) {
    PureColors pure;
    for (int y = 0; y + 1 < image.height; ++y) {
        const QRgb* upper = image.row(y);
        const QRgb* lower = image.row(y + 1);
        for (int x = 0; x + 1 < image.width;) {
            // A run of blocks is added up as a whole.
            const int begin = x;
            const QRgb color = upper[x];
            while (x + 1 < image.width && upper[x] == color && lower[x] == color &&
                   upper[x + 1] == color && lower[x + 1] == color)
                ++x;
            if (x == begin) {
                ++x;
                continue;
            }
            pure.blocks.add(color, static_cast<std::uint32_t>(x - begin));
            pure.blockCount += static_cast<std::uint64_t>(x - begin);
        }
        pure.placeCount += static_cast<std::uint64_t>(image.width - 1);
    }
    return pure;
}

ColorCounts countColors(const PixelView& image, std::size_t most) {
    ColorCounts counts;
    for (int y = 0; y < image.height && counts.entries().size() <= most; ++y) {
        const QRgb* row = image.row(y);
        for (int x = 0; x < image.width; ++x)
            counts.add(row[x]);
    }
    return counts;
}

} // namespace ovtrace
