#include "support/randominput.h"

#include <blurkernels.h>
#include <kernels/colorcell.h>
#include <kernels/cornerbits.h>
#include <kernels/means3.h>
#include <kernels/nearestincell.h>
#include <nearestcolor.h>
#include <pixelruns.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <numeric>
#include <vector>

using namespace ovtrace;

namespace {

using Byte = signed char;

Byte definedMean3(Byte before, Byte center, Byte after) {
    const auto weights = blurKernel(1);
    double sum = 0.0;
    sum += before * weights[0];
    sum += center * weights[1];
    sum += after * weights[2];
    const double weightSum = (weights[0] + weights[1]) + weights[2];
    return static_cast<Byte>(static_cast<int>(std::floor(sum / weightSum)) & 255);
}

} // namespace

TEST(Means3, WeightsSumToExactlyOne) {
    const auto weights = blurKernel(1);
    EXPECT_EQ((weights[0] + weights[1]) + weights[2], 1.0);
}

TEST(Means3, EveryFormGivesWhatDoublesGiveForEveryThreeBytes) {
    std::vector<Byte> before(256);
    std::vector<Byte> center(256);
    std::vector<Byte> after(256);
    std::vector<Byte> expected(256);
    std::vector<Byte> means(256);
    std::iota(after.begin(), after.end(), Byte(-128));
    for (int a = -128; a < 128; ++a) {
        before.assign(256, static_cast<Byte>(a));
        for (int b = -128; b < 128; ++b) {
            center.assign(256, static_cast<Byte>(b));
            for (std::size_t i = 0; i < 256; ++i)
                expected[i] = definedMean3(before[i], center[i], after[i]);
            for (const VectorLevel level : vectorLevels()) {
                forceVectorLevel(level);
                means3(before.data(), center.data(), after.data(), means.data(), 256);
                ASSERT_EQ(means, expected) << a << ", " << b;
            }
        }
    }
    forceVectorLevel(bestVectorLevel());
}

TEST(Means3, EveryFormWritesTheSameAndNothingElse) {
    constexpr qsizetype Room = 240;
    constexpr qsizetype Guard = 16;
    constexpr Byte Untouched = 77;
    RandomInput input(20265);
    for (int round = 0; round < 20000; ++round) {
        // Odd sizes, odd starts, and neighbours that are often alike or evenly spaced.
        const qsizetype size = input.number(0, 160);
        std::vector<Byte> bytes[3];
        for (auto& row : bytes)
            row.resize(Room);
        const int spread = input.number(0, 3) * 40;
        const int base = input.number(-128, 127 - spread);
        for (std::size_t i = 0; i < Room; ++i) {
            bytes[1][i] = static_cast<Byte>(base + input.number(0, spread));
            for (const std::size_t row : {0U, 2U})
                bytes[row][i] = input.oneIn(2) ? bytes[1][i]
                                               : static_cast<Byte>(base + input.number(0, spread));
        }
        const qsizetype start = input.number(0, 15);
        std::vector<std::vector<Byte>> results;
        for (const VectorLevel level : vectorLevels()) {
            forceVectorLevel(level);
            ASSERT_EQ(vectorLevel(), level);
            std::vector<Byte>& result = results.emplace_back(Room, Untouched);
            means3(bytes[0].data() + start, bytes[1].data() + start, bytes[2].data() + start,
                   result.data() + Guard + start, size);
        }
        forceVectorLevel(bestVectorLevel());
        for (const auto& result : results)
            ASSERT_EQ(result, results[0]) << "round " << round << ", " << size << " bytes";
        for (std::size_t i = 0; i < Room; ++i) {
            const qsizetype place = static_cast<qsizetype>(i) - Guard - start;
            if (place < 0 || place >= size) {
                ASSERT_EQ(results[0][i], Untouched) << i;
            }
        }
    }
}

template <typename Cell> class CornerBits : public testing::Test {};
using VectorCells = testing::Types<std::uint8_t, std::uint16_t>;
TYPED_TEST_SUITE(CornerBits, VectorCells);

TYPED_TEST(CornerBits, EveryFormFindsTheSameCells) {
    RandomInput input(20267);
    for (int round = 0; round < 5000; ++round) {
        const int colors = input.number(1, 4);
        std::vector<TypeParam> cells(CornerCells + 16 + 1);
        std::vector<TypeParam> above(CornerCells + 16);
        for (auto* row : {&cells, &above}) {
            for (TypeParam& cell : *row)
                cell = static_cast<TypeParam>(-1 - input.number(0, colors));
        }
        const int start = input.number(0, 15);
        std::uint64_t expected = 0;
        for (int i = 0; i < CornerCells; ++i) {
            const auto x = static_cast<std::size_t>(start + i);
            if (cells[x + 1] != cells[x] && cells[x + 1] != above[x])
                expected |= std::uint64_t(1) << i;
        }
        const TypeParam* first = &cells[static_cast<std::size_t>(start) + 1];
        const TypeParam* firstAbove = &above[static_cast<std::size_t>(start)];
        ASSERT_EQ(cornerBits(first, firstAbove), expected);
        ASSERT_EQ(cornerBitsSsse3(first, firstAbove), expected);
    }
}

namespace {

/// Calls check.operator()<level>() for the forms that there are of the kernels of a colour cell.
template <typename Check> void forCellLevels(const Check& check) {
    check.template operator()<VectorLevel::Scalar>();
    check.template operator()<VectorLevel::Ssse3>();
}

} // namespace

TEST(ColorCell, CutsColorsIntoCellsAndPlaces) {
    RandomInput input(20269);
    for (int round = 0; round < 5000; ++round) {
        const auto color = static_cast<std::uint32_t>(input.number(0, 0x7fffffff)) * 2654435761U;
        const std::uint32_t cell = colorcell::cellOf(color);
        EXPECT_EQ(cell, color & 0xfffcfcfcU);
        ASSERT_EQ(colorcell::colorAt(cell, colorcell::placeOf(color)), color);
    }
    EXPECT_EQ(colorcell::placeOf(0xff030201U), 1U + 4U * 2U + 16U * 3U);
}

TEST(ColorCell, EveryFormFindsTheUsedPlaces) {
    RandomInput input(20270);
    for (int round = 0; round < 5000; ++round) {
        std::array<std::uint32_t, colorcell::Places> numbers{};
        std::uint64_t expected = 0;
        const int rarity = input.number(1, 10);
        for (std::size_t place = 0; place < numbers.size(); ++place) {
            if (!input.oneIn(rarity))
                continue;
            // Any bit makes a number other than 0.
            numbers[place] = 1U << input.number(0, 31);
            expected |= std::uint64_t(1) << place;
        }
        forCellLevels([&]<VectorLevel Level>() {
            ASSERT_EQ(colorcell::usedPlaces<Level>(numbers.data()), expected);
        });
    }
}

TEST(ColorCell, EveryFormFindsEqualPlaces) {
    RandomInput input(20272);
    for (int round = 0; round < 5000; ++round) {
        const auto value = static_cast<std::uint8_t>(input.number(0, 255));
        std::array<std::uint8_t, colorcell::Places + 1> bytes{};
        std::uint64_t expected = 0;
        const int rarity = input.number(1, 10);
        for (std::uint32_t place = 0; place < colorcell::Places; ++place) {
            const bool equal = !input.oneIn(rarity);
            bytes[place + 1] = equal ? value : static_cast<std::uint8_t>(value ^ 1U << (place % 8));
            expected |= std::uint64_t(equal ? 1 : 0) << place;
        }
        forCellLevels([&]<VectorLevel Level>() {
            ASSERT_EQ(colorcell::equalPlaces<Level>(bytes.data() + 1, value), expected);
        });
    }
}

TEST(ColorCell, EveryFormAddsUpTheSame) {
    RandomInput input(20273);
    for (int round = 0; round < 5000; ++round) {
        std::array<std::uint32_t, colorcell::Places> counts{};
        const int most = input.oneIn(2) ? 3 : (1 << 30) / 64 - 1;
        std::array<std::uint64_t, 3> expected{};
        std::uint64_t pixels = 0;
        for (std::uint32_t place = 0; place < counts.size(); ++place) {
            counts[place] = static_cast<std::uint32_t>(input.number(0, most));
            pixels += counts[place];
            expected[0] += std::uint64_t(counts[place]) * (place % 4);
            expected[1] += std::uint64_t(counts[place]) * (place / 4 % 4);
            expected[2] += std::uint64_t(counts[place]) * (place / 16);
        }
        forCellLevels([&]<VectorLevel Level>() {
            const colorcell::Totals sums = colorcell::totals<Level>(counts.data());
            ASSERT_EQ(sums.pixels, pixels);
            ASSERT_EQ(sums.red, expected[0]);
            ASSERT_EQ(sums.green, expected[1]);
            ASSERT_EQ(sums.blue, expected[2]);
        });
    }
}

TEST(ColorCell, EveryFormFindsTheNearestColors) {
    RandomInput input(20271);
    for (int round = 0; round < 3000; ++round) {
        // Colours near each other, so that ties occur; of far apart alphas too.
        const int spread = input.oneIn(2) ? 255 : 6;
        const int lowest = input.number(0, 255 - spread);
        const auto color = [&] {
            std::uint32_t word = input.oneIn(2) ? 255U : 0U;
            if (input.oneIn(3))
                word = static_cast<std::uint32_t>(input.number(0, 255));
            for (int c = 0; c < 3; ++c)
                word =
                    word << 8U | static_cast<std::uint32_t>(input.number(lowest, lowest + spread));
            return word;
        };
        const std::uint32_t cell = colorcell::cellOf(color());
        std::vector<std::uint32_t> colors(static_cast<std::size_t>(input.number(1, 31)));
        std::generate(colors.begin(), colors.end(), color);
        std::vector<ColorBlock> blocks((colors.size() + ColorBlock::Size - 1) / ColorBlock::Size);
        for (std::size_t i = 0; i < blocks.size() * ColorBlock::Size; ++i) {
            const std::size_t k = std::min(i, colors.size() - 1);
            ColorBlock& block = blocks[i / ColorBlock::Size];
            block.colors[i % ColorBlock::Size] = spreadColor(colors[k]);
            block.indices[i % ColorBlock::Size] = static_cast<std::int32_t>(k);
            block.size += i == k ? 1 : 0;
            block.continues = &block != &blocks.back();
        }
        std::array<std::uint8_t, colorcell::Places> expected{};
        for (std::uint32_t place = 0; place < colorcell::Places; ++place) {
            const std::uint64_t here = spreadColor(colorcell::colorAt(cell, place));
            unsigned least = 1024;
            for (std::size_t k = 0; k < colors.size(); ++k) {
                const unsigned distance = spreadDistance(here, spreadColor(colors[k]));
                if (distance < least) {
                    least = distance;
                    expected[place] = static_cast<std::uint8_t>(k);
                }
            }
        }
        forCellLevels([&]<VectorLevel Level>() {
            std::array<std::uint8_t, colorcell::Places + 2> indices{};
            indices.front() = indices.back() = 99;
            const bool found =
                colorcell::nearestInCell<Level>(blocks.data(), cell, indices.data() + 1);
            ASSERT_EQ(found, OVTRACE_X86 != 0 && Level != VectorLevel::Scalar);
            if (!found)
                return;
            ASSERT_TRUE(std::equal(expected.begin(), expected.end(), indices.begin() + 1));
            ASSERT_EQ(indices.front(), 99);
            ASSERT_EQ(indices.back(), 99);
        });
    }
}

TEST(PixelRuns, BringEveryPixelOnceAndInOrder) {
    RandomInput input(20268);
    for (const Channels channels : {Channels::Grey, Channels::Opaque, Channels::All}) {
        for (int width = 1; width <= 100; ++width) {
            PixelImage image(width, 1, channels);
            const auto size = static_cast<std::size_t>(channels);
            std::vector<char> pixel(size);
            for (int x = 0; x < width; ++x) {
                if (x == 0 || input.oneIn(input.oneIn(2) ? 30 : 3))
                    pixel[size - 1] = static_cast<char>(input.number(-128, 127));
                std::copy(pixel.begin(), pixel.end(),
                          image.row(0) + x * static_cast<qsizetype>(size));
            }
            withChannels(channels, [&]<Channels known>() {
                int next = 0;
                visitRow<known>(image, 0, [&](std::uint32_t word, int x, int count) {
                    ASSERT_EQ(x, next);
                    ASSERT_GE(count, 1);
                    for (; next < x + count; ++next)
                        ASSERT_EQ(word, pixelWord<known>(image.row(0) + next * image.pixelBytes()));
                });
                ASSERT_EQ(next, width);
            });
        }
    }
}

TEST(NearestColor, IsTheFirstOfTheNearestForEveryKindOfPalette) {
    RandomInput input(20266);
    for (int round = 0; round < 400; ++round) {
        QList<QList<char>> lists;
        do
            lists = input.palette(input.oneIn(4) ? 300 : 20);
        while (lists.isEmpty());
        Palette palette = toPalette(lists);
        const bool opaque = input.oneIn(2);
        const bool close = input.oneIn(3);
        for (Color& color : palette) {
            if (opaque)
                color.alpha = 127;
            if (close)
                color.red = color.green = static_cast<Byte>(color.blue / 8);
        }
        NearestColor nearest;
        nearest.setPalette(palette);
        for (int i = 0; i < 400; ++i) {
            const auto byte = [&] { return static_cast<Byte>(input.number(-128, 127)); };
            Color pixel{byte(), byte(), byte(), opaque && !input.oneIn(9) ? Byte(126) : byte()};
            if (input.oneIn(3))
                pixel = palette[static_cast<std::size_t>(
                    input.number(0, static_cast<int>(palette.size()) - 1))];
            int best = 1024;
            int index = 0;
            for (std::size_t k = 0; k < palette.size(); ++k) {
                const Color& c = palette[k];
                const int d = std::abs(pixel.red - c.red) + std::abs(pixel.green - c.green) +
                              std::abs(pixel.blue - c.blue) + 4 * std::abs(pixel.alpha - c.alpha);
                if (d < best) {
                    best = d;
                    index = static_cast<int>(k);
                }
            }
            ASSERT_EQ(nearest.find<VectorLevel::Scalar>(channelWord(pixel)), index)
                << "round " << round;
            ASSERT_EQ(nearest.find<VectorLevel::Ssse3>(channelWord(pixel)), index)
                << "round " << round;
        }
    }
}
