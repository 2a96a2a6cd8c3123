#include "quantization.h"

#include "nearestcolor.h"
#include "random.h"

#include <colorhistogram.h>
#include <pixelruns.h>

#include <algorithm>
#include <array>
#include <bit>

namespace ovtrace {
namespace {

constexpr std::size_t ChannelCount = 4;

/// The pixels that one colour got in a cycle.
struct Share {
    std::array<std::int64_t, ChannelCount> sums{}; ///< of channel values 0..255
    std::int64_t pixels = 0;

    void add(std::uint32_t color, std::int64_t count) {
        for (std::size_t c = 0; c < ChannelCount; ++c)
            sums[c] += std::int64_t(color >> 8 * c & 255U) * count;
        pixels += count;
    }
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
    void add(std::uint32_t cell, const colorcell::Totals& totals) {
        add(cell, totals.pixels);
        redGreen += totals.red | std::uint64_t(totals.green) << 32U;
        blueAlpha += totals.blue;
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

/// The indices of all pixels; find(pixel) says which. Where there is room they take the place of
/// the pixels, from first to last: a cell never lies farther on than its pixel.
template <Channels channels, typename Cell, typename Find>
CellGrid<Cell> indicesOf(PixelImage& image, StageProgress progress, const Find& find) {
    const auto store = [&](Cell* grid) {
        for (int y = 0; y < image.height; ++y) {
            Cell* cells = grid + (qsizetype(image.width) + 2) * (qsizetype(y) + 1) + 1;
            visitRow<channels>(image, y, [&](std::uint32_t pixel, int x, int count) {
                const auto index = static_cast<Cell>(find(pixel));
                cells[x] = index;
                if (count > 1)
                    std::fill_n(cells + x + 1, count - 1, index);
            });
            progress.advance(image.width);
        }
    };
    if constexpr (sizeof(Cell) <= static_cast<std::size_t>(channels)) {
        store(reinterpret_cast<Cell*>(image.memory()));
        PageMemory memory = image.takeMemory();
        memory.shrink(CellGrid<Cell>::bytesOf(image.width, image.height));
        return CellGrid<Cell>(image.width, image.height, std::move(memory));
    } else {
        CellGrid<Cell> grid(image.width, image.height);
        store(grid.rowCells(0));
        return grid;
    }
}

/// The pixels of an image, one by one: what is left when they have too many colours.
template <typename Cell, VectorLevel Level, Channels channels> class SinglePixels {
public:
    SinglePixels(PixelImage& image, StageProgress progress) : image(image), progress(progress) {
    }

    /// Assigns all pixels and returns what each of the colours got.
    Shares assign(std::size_t colors, NearestColor& nearest) const {
        Shares shares(colors);
        std::vector<PackedShare> packed(colors);
        std::int64_t room = PackedPixels;
        for (int y = 0; y < image.height; ++y) {
            if (room < image.width) {
                unpack(packed, shares);
                room = PackedPixels;
            }
            room -= image.width;
            visitRow<channels>(image, y, [&](std::uint32_t pixel, int, int count) {
                packed[static_cast<std::size_t>(nearest.find<Level>(pixel))].add(
                    pixel, static_cast<std::uint64_t>(count));
            });
            progress.advance(image.width);
        }
        unpack(packed, shares);
        return shares;
    }

    CellGrid<Cell> indices(NearestColor& nearest) {
        return indicesOf<channels, Cell>(
            image, progress, [&](std::uint32_t pixel) { return nearest.find<Level>(pixel); });
    }

private:
    PixelImage& image;
    StageProgress progress;
};

/// The pixels of an image, counted by colour.
template <typename Cell, VectorLevel Level, Channels channels> class CountedPixels {
public:
    CountedPixels(PixelImage& image, ColorHistogram<channels>& histogram, StageProgress progress)
        : image(image), histogram(histogram), progress(progress) {
    }

    Shares assign(std::size_t colors, NearestColor& nearest) const {
        Shares shares(colors);
        std::vector<PackedShare> packed(colors);
        const bool canPack = std::int64_t(image.width) * image.height <= PackedPixels;
        std::array<Cell, colorcell::Places> indices{};
        histogram.template visitCells<Level>([&](const CountedCell& cell) {
            progress.advance(colorcell::Places);
            nearest.findInCell<Level>(cell.cell, cell.used, indices.data());
            if (canPack && addWhole(cell, indices, packed))
                return;
            colorcell::visitPlaces(cell.used, [&](std::uint32_t place) {
                const std::uint32_t color = colorcell::colorAt(cell.cell, place);
                const auto index = static_cast<std::size_t>(indices[place]);
                if (canPack)
                    packed[index].add(color, cell.counts[place]);
                else
                    shares[index].add(color, cell.counts[place]);
            });
        });
        unpack(packed, shares);
        return shares;
    }

    CellGrid<Cell> indices(NearestColor& nearest) {
        histogram.template replaceCounts<Level, Cell>([&](const CountedCell& cell, Cell* values) {
            progress.advance(colorcell::Places);
            nearest.findInCell<Level>(cell.cell, cell.used, values);
        });
        return indicesOf<channels, Cell>(image, progress, [&](std::uint32_t pixel) {
            return histogram.template value<Cell>(pixel);
        });
    }

private:
    /// Adds a cell to the share of the one colour that all of it is assigned to, if there is one.
    static bool addWhole(const CountedCell& cell,
                         const std::array<Cell, colorcell::Places>& indices,
                         std::vector<PackedShare>& packed) {
        if constexpr (sizeof(Cell) == 1 && channels != Channels::Grey) {
            const Cell index = indices[static_cast<std::size_t>(std::countr_zero(cell.used))];
            if ((cell.used & ~colorcell::equalPlaces<Level>(indices.data(), index)) != 0)
                return false;
            packed[index].add(cell.cell, colorcell::totals<Level>(cell.counts));
            return true;
        }
        return false;
    }

    PixelImage& image;
    ColorHistogram<channels>& histogram;
    StageProgress progress;
};

/// Counts the colours of the image; false when they are too many to be worth it.
template <Channels channels>
bool countColors(const PixelImage& image, ColorHistogram<channels>& histogram,
                 StageProgress progress) {
    bool counted = true;
    for (int y = 0; y < image.height && counted; ++y) {
        visitRow<channels>(image, y, [&](std::uint32_t pixel, int, int count) {
            counted = counted && histogram.add(pixel, static_cast<std::uint32_t>(count));
        });
        progress.advance(image.width);
    }
    return counted;
}

/// How many cells of the histogram are worth having for an image of so many pixels. None in one
/// whose counts might not fit their 32 bits.
std::size_t countableCells(std::int64_t pixels) {
    constexpr std::int64_t LargestCount = 0xffffffff;
    constexpr std::int64_t Fewest = 512;
    constexpr std::int64_t Most = 1 << 16;
    return pixels < LargestCount ? static_cast<std::size_t>(std::clamp(pixels / 64, Fewest, Most))
                                 : 0;
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

/// All cycles; returns the indices that the last one assigns.
template <typename Cell, Channels channels, typename Pixels>
CellGrid<Cell> runCycles(Pixels pixels, std::int64_t pixelCount, Palette& palette,
                         const QuantizationOptions& options) {
    NearestColor nearest(channels);
    nearest.setPalette(palette);
    for (int cycle = 1; cycle < options.cycles; ++cycle) {
        const Shares shares = pixels.assign(palette.size(), nearest);
        const bool last = cycle == options.cycles - 1;
        if (!refinePalette(palette, shares, pixelCount, options.minColorRatio, !last))
            break;
        nearest.setPalette(palette);
    }
    return pixels.indices(nearest);
}

template <typename Cell, VectorLevel Level, Channels channels>
CellGrid<Cell> runCycles(PixelImage& image, Palette& palette, const QuantizationOptions& options,
                         StageProgress progress) {
    const std::int64_t pixels = std::int64_t(image.width) * image.height;
    ColorHistogram<channels> histogram(countableCells(pixels));
    progress.expect(2 * pixels); // to count them and to store their indices
    if (countColors<channels>(image, histogram, progress))
        return runCycles<Cell, channels>(
            CountedPixels<Cell, Level, channels>(image, histogram, progress), pixels, palette,
            options);
    progress.expect(std::int64_t(options.cycles - 1) * pixels);
    return runCycles<Cell, channels>(SinglePixels<Cell, Level, channels>(image, progress), pixels,
                                     palette, options);
}

template <typename Cell>
CellGrid<Cell> quantize(PixelImage& image, Palette& palette, const QuantizationOptions& options,
                        StageProgress progress) {
    if (options.cycles < 1 || palette.empty())
        return CellGrid<Cell>(image.width, image.height);
    return withChannels(image.channels, [&]<Channels channels>() {
        if (vectorLevel() == VectorLevel::Scalar)
            return runCycles<Cell, VectorLevel::Scalar, channels>(image, palette, options,
                                                                  progress);
        return runCycles<Cell, VectorLevel::Ssse3, channels>(image, palette, options, progress);
    });
}

} // namespace

QuantizedImage colorquantization(PixelImage image, Palette& palette,
                                 const QuantizationOptions& options, StageProgress progress) {
    const int colors = static_cast<int>(palette.size());
    return withCell(palette.size(), [&]<typename Cell>() -> QuantizedImage {
        return {quantize<Cell>(image, palette, options, progress), colors};
    });
}

} // namespace ovtrace
