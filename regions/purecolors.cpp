#include "purecolors.h"

#include "mixing.h"

#include <algorithm>
#include <limits>

namespace ovtrace {

namespace {

/// The colours between two others that have many more blocks.
std::vector<QRgb> likelyMixes(const ColorCounts& blocks) {
    constexpr std::size_t Usual = 64; // colours that others may be mixes of
    constexpr std::uint32_t ManyMore = 16;
    constexpr double Rounding = 2.0; // steps of a channel
    std::vector<ColorCounts::Entry> order = blocks.entries();
    std::stable_sort(order.begin(), order.end(),
                     [](const auto& a, const auto& b) { return a.count > b.count; });
    const auto isBetween = [](QRgb color, QRgb one, QRgb other) {
        const ColorAxis axis(one, other);
        const double t = axis.rawPosition(mixColor(color));
        return t > 0.0 && t < 1.0 && axis.residual(mixColor(color)) <= Rounding;
    };
    std::vector<QRgb> mixes;
    for (const ColorCounts::Entry& entry : order) {
        std::size_t count = 0;
        while (count < std::min(Usual, order.size()) &&
               order[count].count / ManyMore >= entry.count)
            ++count;
        bool found = false;
        for (std::size_t i = 0; i < count && !found; ++i) {
            for (std::size_t k = 0; k < i && !found; ++k)
                found = isBetween(entry.color, order[i].color, order[k].color);
        }
        if (found)
            mixes.push_back(entry.color);
    }
    return mixes;
}

} // namespace

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

ColorCounts withoutMixes(const PixelView& image, const ColorCounts& blocks) {
    constexpr std::uint32_t PixelsPerBlock = 128; // lines of one pixel on the grid make more blocks
    const std::vector<QRgb> mixes = likelyMixes(blocks);
    if (mixes.empty())
        return blocks;
    const ColorCounts pixels = countColors(image, std::numeric_limits<std::size_t>::max());
    ColorCounts plain;
    for (const ColorCounts::Entry& entry : blocks.entries()) {
        const bool isMix = std::find(mixes.begin(), mixes.end(), entry.color) != mixes.end();
        if (!isMix || pixels.countOf(entry.color) / PixelsPerBlock < entry.count)
            plain.add(entry.color, entry.count);
    }
    return plain;
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
