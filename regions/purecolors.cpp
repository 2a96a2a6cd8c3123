#include "purecolors.h"

#include "mixing.h"

#include <algorithm>
#include <optional>

namespace ovtrace {

namespace {

constexpr double Rounding = 2.0; // steps of a channel

/// A colour between two others that have more blocks, and how its pixels lie.
struct LikelyMix {
    ColorAxis between; ///< those two
    QRgb color = 0;
    std::uint32_t blocks = 0;
    bool isRare = false;       ///< many more blocks, they have
    std::uint32_t pixels = 0;  ///< of this colour
    std::uint32_t inner = 0;   ///< those whose neighbours all have it
    std::uint32_t onEdges = 0; ///< those alone between pixels of which it is a mix
    std::uint32_t crests = 0;  ///< those around which nothing is nearer to one of the two
};

bool isBetween(QRgb color, const ColorAxis& axis, Light light) {
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
    // Between the two commonest, if there are any.
    const auto mixOf = [&order, light](const ColorCounts::Entry& entry) {
        std::optional<LikelyMix> mix;
        for (std::size_t i = 0; i < order.size() && order[i].count > entry.count && !mix; ++i) {
            for (std::size_t k = 0; k < i && !mix; ++k) {
                const ColorAxis axis(order[i].color, order[k].color, light);
                if (isBetween(entry.color, axis, light))
                    mix = {.between = axis,
                           .color = entry.color,
                           .blocks = entry.count,
                           .isRare = order[i].count / ManyMore > entry.count};
            }
        }
        return mix;
    };
    std::vector<LikelyMix> mixes;
    for (const ColorCounts::Entry& entry : blocks.entries()) {
        if (const auto mix = mixOf(entry))
            mixes.push_back(*mix);
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
        mix.crests += std::uint32_t(isCrest(x, y, mix));
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
               isBetween(color, ColorAxis(before, behind, light), light);
    }
    /// Whether no pixel near by is nearer to one of the two colours, and the one beside it is
    /// equal: lines have crests, and edges have none. Those of long lines along the pixels are left
    /// out, for these may be mixes.
    bool isCrest(int x, int y, const LikelyMix& mix) const {
        constexpr int Reach = 2; // edges are mixed no farther
        if (x < Reach || y < Reach || x + Reach >= image.width || y + Reach >= image.height)
            return false;
        const int across = runThrough(x, y, 1, 0);
        const int upright = runThrough(x, y, 0, 1);
        if (std::max(across, upright) == 1 || std::max(across, upright) >= LongRun)
            return false;
        const double step = Rounding * mix.between.step();
        const double own = positionOf(mix.color, mix);
        bool isLeast = true;
        bool isMost = true;
        for (int row = y - Reach; row <= y + Reach && (isLeast || isMost); ++row) {
            for (int column = x - Reach; column <= x + Reach; ++column) {
                const double there = positionOf(image.at(column, row), mix);
                isLeast = isLeast && there >= own - step;
                isMost = isMost && there <= own + step;
            }
        }
        return isLeast != isMost;
    }
    double positionOf(QRgb color, const LikelyMix& mix) const {
        return mix.between.rawPosition(mixColor(color, light));
    }
    /// How many equal pixels a row, or a column, has about one; no more than LongRun are told.
    int runThrough(int x, int y, int dx, int dy) const {
        int count = 1;
        for (const int direction : {-1, 1}) {
            int column = x + direction * dx;
            int row = y + direction * dy;
            while (count < LongRun && column >= 0 && row >= 0 && column < image.width &&
                   row < image.height && image.at(column, row) == image.at(x, y)) {
                ++count;
                column += direction * dx;
                row += direction * dy;
            }
        }
        return count;
    }

    static constexpr int LongRun = 16;
    const PixelView& image;
    std::vector<LikelyMix>& mixes;
    Light light;
    ColorCounts places; ///< in the same order
};

/// What has few blocks for its pixels is no area; nor is what has none as wide as three pixels, and
/// lies along edges more often than in blocks: lines that run between two rows make these. But
/// where most pixels are crests they are lettering of this colour: the crests of mixes have any.
bool isMix(const LikelyMix& mix) {
    if (mix.crests > mix.pixels / 2)
        return false;
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
