#include "purecolors.h"

#include "mixing.h"

#include <algorithm>

namespace ovtrace {

namespace {

constexpr double Rounding = 2.0; // steps of a channel

/// A colour between two others that have more blocks, and how its pixels lie.
struct LikelyMix {
    QRgb color = 0;
    std::uint32_t blocks = 0;
    bool isRare = false;       ///< many more blocks, they have
    std::uint32_t pixels = 0;  ///< of this colour
    std::uint32_t inner = 0;   ///< those whose neighbours all have it
    std::uint32_t onEdges = 0; ///< those alone between pixels of which it is a mix
};

bool isBetween(QRgb color, QRgb one, QRgb other, Light light) {
    const ColorAxis axis(one, other, light);
    const MixColor mix = mixColor(color, light);
    const double t = axis.rawPosition(mix);
    return t > 0.0 && t < 1.0 && axis.residual(mix) <= Rounding;
}

/// The colours between two others that have more blocks.
std::vector<LikelyMix> likelyMixes(const ColorCounts& blocks, Light light) {
    constexpr std::size_t Usual = 64; // colours that others may be mixes of
    constexpr std::uint32_t ManyMore = 16;
    std::vector<ColorCounts::Entry> order = blocks.entries();
    std::stable_sort(order.begin(), order.end(),
                     [](const auto& a, const auto& b) { return a.count > b.count; });
    order.resize(std::min(order.size(), Usual));
    // The rarer one of the two commonest between which it lies has so many blocks; 0 if none.
    const auto blocksAround = [&order, light](const ColorCounts::Entry& entry) {
        for (std::size_t i = 0; i < order.size() && order[i].count > entry.count; ++i) {
            for (std::size_t k = 0; k < i; ++k) {
                if (isBetween(entry.color, order[i].color, order[k].color, light))
                    return order[i].count;
            }
        }
        return std::uint32_t{0};
    };
    std::vector<LikelyMix> mixes;
    for (const ColorCounts::Entry& entry : blocks.entries()) {
        const std::uint32_t around = blocksAround(entry);
        if (around > 0)
            mixes.push_back({entry.color, entry.count, around / ManyMore > entry.count});
    }
    return mixes;
}

/// Looks at the pixels of all likely mixes.
class MixPixels {
public:
    MixPixels(const PixelView& image, std::vector<LikelyMix>& mixes, Light light)
        : image(image), mixes(mixes), light(light) {
        for (const LikelyMix& mix : mixes)
            places.add(mix.color);
    }
    void count() {
        for (int y = 0; y < image.height; ++y) {
            const QRgb* row = image.row(y);
            std::size_t found = mixes.size();
            for (int x = 0; x < image.width; ++x) {
                if (x == 0 || row[x] != row[x - 1])
                    found = places.find(row[x]);
                if (found < mixes.size())
                    add(x, y, mixes[found]);
            }
        }
    }

private:
    void add(int x, int y, LikelyMix& mix) const {
        ++mix.pixels;
        if (x == 0 || y == 0 || x + 1 == image.width || y + 1 == image.height)
            return;
        mix.inner += std::uint32_t(isInner(x, y, mix.color));
        mix.onEdges +=
            std::uint32_t(isAloneBetween(mix.color, image.at(x - 1, y), image.at(x + 1, y)) ||
                          isAloneBetween(mix.color, image.at(x, y - 1), image.at(x, y + 1)));
    }
    bool isInner(int x, int y, QRgb color) const {
        for (int row = y - 1; row <= y + 1; ++row) {
            for (int column = x - 1; column <= x + 1; ++column) {
                if (image.at(column, row) != color)
                    return false;
            }
        }
        return true;
    }
    bool isAloneBetween(QRgb color, QRgb before, QRgb behind) const {
        return before != color && behind != color && before != behind &&
               isBetween(color, before, behind, light);
    }

    const PixelView& image;
    std::vector<LikelyMix>& mixes;
    Light light;
    ColorCounts places; ///< in the same order
};

/// What has few blocks for its pixels is no area; nor is what has none as wide as three pixels, and
/// lies along edges more often than in blocks: lines that run between two rows make these.
bool isMix(const LikelyMix& mix) {
    constexpr std::uint32_t PixelsPerBlock = 128; // lines of one pixel on the grid make more blocks
    return (mix.isRare && mix.pixels / PixelsPerBlock >= mix.blocks) ||
           (mix.inner == 0 && mix.onEdges > mix.blocks);
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

ColorCounts withoutMixes(const PixelView& image, const ColorCounts& blocks, Light light) {
    std::vector<LikelyMix> likely = likelyMixes(blocks, light);
    if (likely.empty())
        return blocks;
    MixPixels(image, likely, light).count();
    ColorCounts mixes;
    for (const LikelyMix& mix : likely) {
        if (isMix(mix))
            mixes.add(mix.color);
    }
    ColorCounts plain;
    for (const ColorCounts::Entry& entry : blocks.entries()) {
        if (mixes.countOf(entry.color) == 0)
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
