#include "quantization.h"

#include "nearestcolor.h"
#include "random.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace ovtrace {
namespace {

constexpr int Channels = 4;

/// The pixels that one colour got in a cycle.
struct Share {
    std::array<std::int64_t, Channels> sums{}; ///< of channel values 0..255
    std::int64_t pixels = 0;
};

using Shares = std::vector<Share>;

/// A share in the making: two sums to a word, each good for 2^24 pixels.
struct PackedShare {
    std::uint64_t redGreen = 0;
    std::uint64_t blueAlpha = 0;
    std::uint64_t pixels = 0;

    void add(Color color, std::uint64_t count) {
        const auto value = [](signed char stored) {
            return static_cast<std::uint64_t>(static_cast<unsigned char>(stored) ^ 128U);
        };
        redGreen += (value(color.red) | value(color.green) << 32U) * count;
        blueAlpha += (value(color.blue) | value(color.alpha) << 32U) * count;
        pixels += count;
    }
};

constexpr std::int64_t PackedPixels = std::int64_t(1) << 24;

/// Adds the packed shares to the shares and clears them.
void unpack(std::vector<PackedShare>& packed, Shares& shares) {
    constexpr std::uint64_t Low = 0xffffffffU;
    for (std::size_t k = 0; k < packed.size(); ++k) {
        const PackedShare& from = packed[k];
        Share& to = shares[k];
        to.sums[0] += static_cast<std::int64_t>(from.redGreen & Low);
        to.sums[1] += static_cast<std::int64_t>(from.redGreen >> 32U);
        to.sums[2] += static_cast<std::int64_t>(from.blueAlpha & Low);
        to.sums[3] += static_cast<std::int64_t>(from.blueAlpha >> 32U);
        to.pixels += static_cast<std::int64_t>(from.pixels);
        packed[k] = {};
    }
}

Color pixelAt(const char* bytes) {
    Color color;
    std::memcpy(&color, bytes, Channels);
    return color;
}

/// Calls visit(color, from, to) for each run of equal pixels of a row.
template <typename Visit> void forEachRun(const char* row, int width, const Visit& visit) {
    for (int from = 0; from < width;) {
        const Color color = pixelAt(row + qsizetype(from) * Channels);
        int to = from + 1;
        while (to < width && pixelAt(row + qsizetype(to) * Channels) == color)
            ++to;
        visit(color, from, to);
        from = to;
    }
}

const char* rowOf(const ImageData& image, int y) {
    return image.data.constData() + qsizetype(y) * image.width * Channels;
}

/// Assigns all pixels and returns what each colour got.
Shares sharesOf(const ImageData& image, std::size_t colors, NearestColor& nearest) {
    Shares shares(colors);
    std::vector<PackedShare> packed(colors);
    std::int64_t room = PackedPixels;
    for (int y = 0; y < image.height; ++y) {
        if (room < image.width) {
            unpack(packed, shares);
            room = PackedPixels;
        }
        room -= image.width;
        forEachRun(rowOf(image, y), image.width, [&](Color color, int from, int to) {
            packed[static_cast<std::size_t>(nearest.find(color))].add(
                color, static_cast<std::uint64_t>(to - from));
        });
    }
    unpack(packed, shares);
    return shares;
}

/// Assigns all pixels and stores their indices.
template <typename Cell>
void storeIndices(const ImageData& image, NearestColor& nearest, CellGrid<Cell>& grid) {
    for (int y = 0; y < image.height; ++y) {
        Cell* cells = grid.rowCells(y + 1) + 1;
        forEachRun(rowOf(image, y), image.width, [&](Color color, int from, int to) {
            std::fill(cells + from, cells + to, static_cast<Cell>(nearest.find(color)));
        });
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

/// All cycles but for storing the indices of the last one.
void refine(const ImageData& image, Palette& palette, const QuantizationOptions& options,
            NearestColor& nearest) {
    const std::int64_t pixels = std::int64_t(image.width) * image.height;
    nearest.setPalette(palette);
    for (int cycle = 1; cycle < options.cycles; ++cycle) {
        const Shares shares = sharesOf(image, palette.size(), nearest);
        const bool last = cycle == options.cycles - 1;
        if (!refinePalette(palette, shares, pixels, options.minColorRatio, !last))
            break;
        nearest.setPalette(palette);
    }
}

template <typename Cell>
CellGrid<Cell> quantize(const ImageData& image, Palette& palette,
                        const QuantizationOptions& options) {
    CellGrid<Cell> grid(image.width, image.height);
    if (options.cycles < 1 || palette.empty()) {
        for (int y = 0; y < image.height; ++y)
            std::fill_n(grid.rowCells(y + 1) + 1, image.width, Cell(0));
        return grid;
    }
    NearestColor nearest(std::int64_t(image.width) * image.height);
    refine(image, palette, options, nearest);
    storeIndices(image, nearest, grid);
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
