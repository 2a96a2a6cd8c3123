// Thinning against a plain form that looks at every pixel in every round.

#include "thinning.h"

#include "pace.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <random>

using namespace ovtrace;

namespace {

/// Whether the neighbours are ink, north first, then clockwise.
std::array<bool, 8> around(const InkMask& mask, std::size_t i) {
    const std::uint8_t* at = mask.values.data() + i;
    const std::ptrdiff_t s = mask.stride;
    return {at[-s] == 1, at[-s + 1] == 1, at[1] == 1,  at[s + 1] == 1,
            at[s] == 1,  at[s - 1] == 1,  at[-1] == 1, at[-s - 1] == 1};
}

/// Lines of neighbours that hang together without the pixel: those between straight neighbours
/// that are paper.
int crossingsOf(const std::array<bool, 8>& p) {
    int count = 0;
    for (std::size_t k = 0; k < 8; k += 2)
        count += !p[k] && (p[k + 1] || p[(k + 2) % 8]) ? 1 : 0;
    return count;
}

/// Guo and Hall's condition for a pixel in the first or the second half of a round.
bool goes(const std::array<bool, 8>& p, bool second) {
    if (crossingsOf(p) != 1)
        return false;
    int one = 0;
    int other = 0;
    for (std::size_t k = 0; k < 8; k += 2) {
        one += p[(k + 7) % 8] || p[k] ? 1 : 0;
        other += p[k] || p[k + 1] ? 1 : 0;
    }
    if (std::min(one, other) < 2 || std::min(one, other) > 3)
        return false;
    return second ? !((p[4] || p[5] || !p[7]) && p[6]) : !((p[0] || p[1] || !p[3]) && p[2]);
}

/// Whether the pixel is the corner of a staircase, whose neighbours touch without it.
bool isStair(const std::array<bool, 8>& p) {
    if (crossingsOf(p) != 1 || std::count(p.begin(), p.end(), true) < 2)
        return false;
    for (std::size_t k = 0; k < 8; k += 2)
        if (p[k] && p[(k + 2) % 8] && !p[(k + 5) % 8])
            return true;
    return false;
}

std::vector<std::size_t> inkOf(const InkMask& mask) {
    std::vector<std::size_t> pixels;
    for (std::size_t i = 0; i < mask.values.size(); ++i)
        if (mask.values[i] == InkMask::Ink)
            pixels.push_back(i);
    return pixels;
}

std::vector<std::size_t> plainlyThinned(InkMask mask) {
    for (int half = 0, idle = 0; idle < 2; half = 1 - half) {
        const InkMask before = mask;
        for (const std::size_t i : inkOf(before))
            if (goes(around(before, i), half == 1))
                mask.values[i] = InkMask::Paper;
        idle = mask.values == before.values ? idle + 1 : 0;
    }
    for (const std::size_t i : inkOf(mask))
        if (isStair(around(mask, i)))
            mask.values[i] = InkMask::Paper;
    return inkOf(mask);
}

/// Discs of ink and some of other values, with noise on them.
InkMask blots(std::mt19937& random) {
    const auto draw = [&random](int below) {
        return static_cast<int>(random() % static_cast<unsigned>(below));
    };
    const int width = 1 + draw(70);
    const int height = 1 + draw(70);
    InkMask mask{width + 2, height + 2, {}};
    mask.values.resize(static_cast<std::size_t>(mask.stride) * static_cast<std::size_t>(mask.rows));
    const int noise = draw(3) * 10;
    for (int n = draw(12); n >= 0; --n) {
        const int atX = draw(width);
        const int atY = draw(height);
        const int radius = draw(20);
        const InkMask::Value value = draw(8) == 0 ? InkMask::Solid : InkMask::Ink;
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x)
                if ((x - atX) * (x - atX) + (y - atY) * (y - atY) <= radius * radius &&
                    draw(100) >= noise)
                    mask.values[mask.indexOf(x, y)] = value;
    }
    return mask;
}

TEST(Thinning, IsThatOfThePlainForm) {
    std::mt19937 random(17);
    for (int k = 0; k < 400; ++k) {
        InkMask mask = blots(random);
        const std::vector<std::size_t> expected = plainlyThinned(mask);
        Pace pace(nullptr);
        EXPECT_EQ(thin(mask, pace), expected);
        EXPECT_EQ(inkOf(mask), expected);
    }
}

TEST(Thinning, BarBecomesALine) {
    InkMask mask{32, 12, std::vector<std::uint8_t>(32 * 12)};
    for (int y = 2; y < 7; ++y)
        for (int x = 3; x < 27; ++x)
            mask.values[mask.indexOf(x, y)] = InkMask::Ink;
    Pace pace(nullptr);
    const std::vector<std::size_t> pixels = thin(mask, pace);
    EXPECT_GE(pixels.size(), 18U);
    EXPECT_LE(pixels.size(), 24U);
    for (const std::size_t i : pixels)
        EXPECT_EQ(mask.yOf(i), 4);
}

TEST(Thinning, NothingStaysNothing) {
    InkMask mask{3, 3, std::vector<std::uint8_t>(9)};
    Pace pace(nullptr);
    EXPECT_TRUE(thin(mask, pace).empty());
    mask.values[4] = InkMask::Ink;
    EXPECT_EQ(thin(mask, pace), std::vector<std::size_t>{4});
}

} // namespace
