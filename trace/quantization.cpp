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

    void add(std::uint32_t pixel, std::uint64_t count) {
        redGreen += ((pixel & 0xffU) | std::uint64_t(pixel & 0xff00U) << 24U) * count;
        blueAlpha += ((pixel >> 16U & 0xffU) | std::uint64_t(pixel & 0xff000000U) << 8U) * count;
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

/// Whether the four pixels from `pixels` on all equal the one before them.
bool fourRepeat(const char* pixels) {
    std::array<std::uint64_t, 2> before;
    std::array<std::uint64_t, 2> four;
    std::memcpy(before.data(), pixels - Channels, sizeof before);
    std::memcpy(four.data(), pixels, sizeof four);
    return ((before[0] ^ four[0]) | (before[1] ^ four[1])) == 0;
}

/// Calls visit(pixel, index, x, count) for the pixels of row y from left to right. Neighbours that
/// are alike come together where four or more of them are; tests one by one would cost too much.
template <VectorLevel Level, typename Visit>
void assignRow(const ImageData& image, int y, NearestColor& nearest, const Visit& visit) {
    const int width = image.width;
    const char* row = image.data.constData() + qsizetype(y) * width * Channels;
    for (int x = 0; x < width;) {
        const std::uint32_t pixel = channelWord(row + qsizetype(x) * Channels);
        const auto index = static_cast<std::size_t>(nearest.find<Level>(pixel));
        int end = x + 1;
        while (end + 4 <= width && fourRepeat(row + qsizetype(end) * Channels))
            end += 4;
        visit(pixel, index, x, end - x);
        x = end;
    }
}

/// Assigns all pixels and returns what each colour got.
template <VectorLevel Level>
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
        assignRow<Level>(image, y, nearest,
                         [&](std::uint32_t pixel, std::size_t index, int, int count) {
                             packed[index].add(pixel, static_cast<std::uint64_t>(count));
                         });
    }
    unpack(packed, shares);
    return shares;
}

/// Assigns all pixels and stores their indices.
template <VectorLevel Level, typename Cell>
void storeIndices(const ImageData& image, NearestColor& nearest, CellGrid<Cell>& grid) {
    for (int y = 0; y < image.height; ++y) {
        Cell* cells = grid.rowCells(y + 1) + 1;
        assignRow<Level>(image, y, nearest,
                         [&](std::uint32_t, std::size_t index, int x, int count) {
                             std::fill_n(cells + x, count, static_cast<Cell>(index));
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

/// All cycles; the last one stores its indices in the grid.
template <VectorLevel Level, typename Cell> void runCycles(const ImageData& image, Palette& palette,
                                                           const QuantizationOptions& options,
                                                           CellGrid<Cell>& grid) {
    const std::int64_t pixels = std::int64_t(image.width) * image.height;
    NearestColor nearest;
    nearest.setPalette(palette);
    for (int cycle = 1; cycle < options.cycles; ++cycle) {
        const Shares shares = sharesOf<Level>(image, palette.size(), nearest);
        const bool last = cycle == options.cycles - 1;
        if (!refinePalette(palette, shares, pixels, options.minColorRatio, !last))
            break;
        nearest.setPalette(palette);
    }
    storeIndices<Level>(image, nearest, grid);
}

template <typename Cell> CellGrid<Cell> quantize(const ImageData& image, Palette& palette,
                                                 const QuantizationOptions& options) {
    CellGrid<Cell> grid(image.width, image.height);
    if (options.cycles < 1 || palette.empty()) {
        for (int y = 0; y < image.height; ++y)
            std::fill_n(grid.rowCells(y + 1) + 1, image.width, Cell(0));
    } else if (vectorLevel() == VectorLevel::Sse2) {
        runCycles<VectorLevel::Sse2>(image, palette, options, grid);
    } else {
        runCycles<VectorLevel::Scalar>(image, palette, options, grid);
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
