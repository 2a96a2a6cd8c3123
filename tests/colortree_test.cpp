#include <colortree.h>
#include <nearestcolor.h>

#include <gtest/gtest.h>

#include <random>

using namespace ovtrace;

namespace {

int distance(std::uint32_t a, std::uint32_t b) {
    int sum = 0;
    for (std::size_t c = 0; c < 4; ++c)
        sum += (c == 3 ? 4 : 1) * std::abs(channelOf(a, c) - channelOf(b, c));
    return sum;
}

/// The plain search: the first of the nearest below the bound, or -1.
std::int32_t plainNearest(const std::vector<std::uint32_t>& palette, std::uint32_t pixel,
                          int bound) {
    std::int32_t index = -1;
    for (std::size_t k = 0; k < palette.size(); ++k) {
        const int d = distance(palette[k], pixel);
        if (d < bound) {
            bound = d;
            index = static_cast<std::int32_t>(k);
        }
    }
    return index;
}

/// Palettes with what is hard for a tree: equal colours, levels with gaps, few values of alpha, all
/// in a corner, all at one distance.
std::vector<std::uint32_t> makePalette(std::mt19937& random, int kind, std::size_t size) {
    std::vector<std::uint32_t> palette;
    while (palette.size() < size) {
        const auto color = static_cast<std::uint32_t>(random());
        switch (kind) {
        case 0:
            palette.push_back(color);
            break;
        case 1:
            palette.push_back(color | 0xff000000U);
            break;
        case 2: // sixteen levels a channel
            palette.push_back(color & 0xf0f0f0f0U);
            break;
        case 3:
            palette.push_back((color & 0x070f0f0fU) | 0xf8000000U);
            break;
        default: { // the sum of red, green and blue is the same
            const std::uint32_t red = color % 128U;
            const std::uint32_t green = color / 128U % (128U - red);
            palette.push_back(0xff000000U | red | green << 8U | (127U - red - green) << 16U);
        }
        }
        if (color % 5U == 0)
            palette.push_back(palette[random() % palette.size()]);
    }
    return palette;
}

constexpr int Kinds = 5;

std::uint32_t makePixel(std::mt19937& random, const std::vector<std::uint32_t>& palette) {
    const auto color = static_cast<std::uint32_t>(random());
    switch (random() % 4U) {
    case 0:
        return color;
    case 1:
        return palette[color % palette.size()];
    case 2:
        return color & 0x0f0f0f0fU;
    default:
        return color | 0xff000000U;
    }
}

Palette toStored(const std::vector<std::uint32_t>& words) {
    Palette palette;
    for (const std::uint32_t word : words) {
        const auto stored = [&](std::size_t c) {
            return static_cast<signed char>(channelOf(word, c) - StoredOffset);
        };
        palette.push_back({stored(0), stored(1), stored(2), stored(3)});
    }
    return palette;
}

} // namespace

TEST(ColorTree, FindsTheFirstOfTheNearest) {
    std::mt19937 random(20270);
    for (int round = 0; round < 60; ++round) {
        const std::size_t size = round < 20 ? 1 + random() % 20U : 1 + random() % 3000U;
        const auto palette = makePalette(random, round % Kinds, size);
        ColorTree tree;
        tree.setColors(palette);
        for (int i = 0; i < 300; ++i) {
            const std::uint32_t pixel = makePixel(random, palette);
            const int bound = i % 3 == 0 ? static_cast<int>(random() % 200U) : 1024;
            ASSERT_EQ(tree.nearest(pixel, bound), plainNearest(palette, pixel, bound))
                << "round " << round;
        }
    }
}

TEST(ColorTree, CandidatesHaveTheNearestOfEveryPixelInTheBox) {
    std::mt19937 random(20271);
    std::size_t least = ~std::size_t(0);
    for (int round = 0; round < 60; ++round) {
        const auto palette = makePalette(random, round % Kinds, 1 + random() % 2000U);
        ColorTree tree;
        tree.setColors(palette);
        ColorBox box;
        for (std::size_t c = 0; c < ColorBox::Channels; ++c) {
            box.low[c] = static_cast<int>(random() % 250U);
            box.high[c] = box.low[c] + static_cast<int>(random() % 6U);
        }
        std::vector<std::int32_t> found;
        ASSERT_TRUE(tree.candidates(box, palette.size(), found));
        ASSERT_TRUE(std::is_sorted(found.begin(), found.end()));
        least = std::min(least, found.size());
        for (int i = 0; i < 100; ++i) {
            std::uint32_t pixel = 0;
            for (std::size_t c = 0; c < ColorBox::Channels; ++c)
                pixel |= (static_cast<std::uint32_t>(box.low[c]) +
                          static_cast<std::uint32_t>(random()) %
                              static_cast<std::uint32_t>(box.high[c] - box.low[c] + 1))
                         << 8U * c;
            const std::int32_t nearest = plainNearest(palette, pixel, 1 << 20);
            ASSERT_TRUE(std::binary_search(found.begin(), found.end(), nearest))
                << "round " << round;
        }
        EXPECT_EQ(tree.candidates(box, found.size() - 1, found), false);
    }
    EXPECT_LT(least, 10U) << "boxes in which all colours count prove nothing";
}

TEST(ColorTree, LargePalettesFindTheSameForBoxesAndForPixels) {
    std::mt19937 random(20272);
    for (int kind = 0; kind < Kinds; ++kind) {
        const auto palette = makePalette(random, kind, 9000 + random() % 3000U);
        NearestColor any;
        any.setPalette(toStored(palette));
        NearestColor opaque(Channels::Opaque);
        opaque.setPalette(toStored(palette));
        for (int i = 0; i < 1500; ++i) {
            const std::uint32_t pixel = makePixel(random, palette);
            const std::int32_t expected = std::max(plainNearest(palette, pixel, 1024), 0);
            ASSERT_EQ(any.find<VectorLevel::Scalar>(pixel), expected) << "kind " << kind;
            ASSERT_EQ(any.find<VectorLevel::Ssse3>(pixel), expected) << "kind " << kind;
            if (pixel >> 24U == 255U) {
                ASSERT_EQ(opaque.find<VectorLevel::Scalar>(pixel), expected) << "kind " << kind;
            }
        }
    }
}
