#include "quantization.h"

#include "random.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>

namespace ovtrace {
namespace {

constexpr int Channels = 4;

/// A colour this far away or farther is not considered; index 0 takes its place.
constexpr int DistanceBound = 1024;

/// The pixels that one colour got in a cycle.
struct Share {
    std::array<std::int64_t, Channels> sums{}; ///< of channel values 0..255
    std::int64_t pixels = 0;
};

using Shares = std::vector<Share>;

int distance(const Color& a, const Color& b) {
    return std::abs(a.red - b.red) + std::abs(a.green - b.green) + std::abs(a.blue - b.blue) +
           4 * std::abs(a.alpha - b.alpha);
}

std::size_t nearestColor(const Palette& palette, const Color& pixel) {
    int best = DistanceBound;
    std::size_t index = 0;
    for (std::size_t k = 0; k < palette.size(); ++k) {
        const int d = distance(pixel, palette[k]);
        if (d < best) {
            best = d;
            index = k;
        }
    }
    return index;
}

Color pixelAt(const ImageData& image, qsizetype offset) {
    Color color;
    std::memcpy(&color, image.data.constData() + offset, Channels);
    return color;
}

void addPixels(Share& share, const Color& color, std::int64_t count) {
    share.sums[0] += count * (color.red + StoredOffset);
    share.sums[1] += count * (color.green + StoredOffset);
    share.sums[2] += count * (color.blue + StoredOffset);
    share.sums[3] += count * (color.alpha + StoredOffset);
    share.pixels += count;
}

/// Assigns the pixels of one row; `cells` points at the cell of its first pixel.
template <typename Cell>
void assignRow(const ImageData& image, int y, const Palette& palette, Shares& shares, Cell* cells) {
    const qsizetype rowOffset = qsizetype(y) * image.width * Channels;
    for (int x = 0; x < image.width;) {
        const Color color = pixelAt(image, rowOffset + qsizetype(x) * Channels);
        int end = x + 1;
        while (end < image.width && pixelAt(image, rowOffset + qsizetype(end) * Channels) == color)
            ++end;
        const std::size_t index = nearestColor(palette, color);
        addPixels(shares[index], color, end - x);
        for (; x < end; ++x)
            cells[x] = static_cast<Cell>(index);
    }
}

void moveToMean(Color& color, const Share& share) {
    // The alpha sum, not the pixel count: a colour of transparent pixels alone stays.
    if (share.sums[3] <= 0)
        return;
    const auto mean = [&](std::size_t channel) {
        return static_cast<signed char>(share.sums[channel] / share.pixels - StoredOffset);
    };
    color = {mean(0), mean(1), mean(2), mean(3)};
}

/// Moves every colour to the mean of its pixels; replaces the rare ones when `mayReplace`.
/// Returns false when nothing moved and nothing was drawn: further cycles would change nothing.
bool refinePalette(Palette& palette, const Shares& shares, std::int64_t pixels,
                   double minColorRatio, bool mayReplace) {
    bool changed = false;
    for (std::size_t k = 0; k < palette.size(); ++k) {
        const Color before = palette[k];
        moveToMean(palette[k], shares[k]);
        changed = changed || palette[k] != before;
        const auto ratio =
            static_cast<float>(static_cast<double>(shares[k].pixels) / static_cast<double>(pixels));
        if (minColorRatio > static_cast<double>(ratio) && mayReplace) {
            palette[k] = randomColor();
            changed = true;
        }
    }
    return changed;
}

template <typename Cell> CellGrid<Cell> quantize(const ImageData& image, Palette& palette,
                                                 const QuantizationOptions& options) {
    CellGrid<Cell> grid(image.width, image.height);
    const std::int64_t pixels = std::int64_t(image.width) * image.height;
    if (options.cycles < 1 || palette.empty()) {
        for (int y = 0; y < image.height; ++y)
            std::fill_n(grid.rowCells(y + 1) + 1, image.width, Cell(0));
        return grid;
    }
    Shares shares(palette.size());
    for (int cycle = 0; cycle < options.cycles; ++cycle) {
        const bool last = cycle == options.cycles - 1;
        if (cycle > 0 && !refinePalette(palette, shares, pixels, options.minColorRatio, !last))
            break;
        shares.assign(palette.size(), {});
        for (int y = 0; y < image.height; ++y)
            assignRow(image, y, palette, shares, grid.rowCells(y + 1) + 1);
    }
    return grid;
}

} // namespace

QuantizedImage colorquantization(const ImageData& image, Palette& palette,
                                 const QuantizationOptions& options) {
    const int colors = static_cast<int>(palette.size());
    if (palette.size() <= LargestBytePalette)
        return {quantize<std::uint8_t>(image, palette, options), colors};
    return {quantize<std::int32_t>(image, palette, options), colors};
}

} // namespace ovtrace
