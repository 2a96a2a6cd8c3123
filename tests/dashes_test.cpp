// Rows of dashes become one stroke with a pattern.

#include "dashes.h"
#include "pace.h"

#include <gtest/gtest.h>

#include <algorithm>

using namespace ovtrace;

namespace {

constexpr int Width = 400;
constexpr int Height = 60;

/// Dashes along y = 30, each a stroke with its ink, two pixels wide.
struct Row {
    InkLevels ink{Width, Height, std::vector<std::uint8_t>(Width* Height)};
    std::vector<Stroke> strokes;

    void fill(int left, int top, int right, int bottom) {
        for (int y = top; y < bottom; ++y)
            for (int x = left; x < right; ++x)
                ink.levels[ink.indexOf(x, y)] = 255;
    }

    void dash(int from, int to) {
        fill(from, 29, to, 31);
        Stroke stroke;
        Moments support(Point{static_cast<double>(from), 30.0});
        for (double x = from + 0.5; x < to; x += 1.0) {
            stroke.samples.push_back({{x, 30.0}, 0.1, false});
            support.add({x, 30.0}, 100.0);
        }
        stroke.ends[0].at = {static_cast<double>(from), 30.0};
        stroke.ends[1].at = {static_cast<double>(to), 30.0};
        stroke.carrier = lineCarrier(support, stroke.start(), stroke.finish());
        stroke.width = 2.0;
        strokes.push_back(stroke);
    }

    std::vector<Stroke> joined() {
        Pace pace(nullptr);
        joinDashes(strokes, ink, {0.1, false, false}, pace);
        std::vector<Stroke> kept;
        std::ranges::copy_if(strokes, std::back_inserter(kept),
                             [](const Stroke& s) { return !s.dropped; });
        return kept;
    }
};

TEST(Dashes, EvenRowIsOneStroke) {
    Row row;
    for (int x = 20; x < 200; x += 18)
        row.dash(x, x + 12);
    const std::vector<Stroke> kept = row.joined();
    ASSERT_EQ(kept.size(), 1U);
    ASSERT_EQ(kept[0].dashes.size(), 2U);
    EXPECT_NEAR(kept[0].dashes[0], 12.0, 1.0);
    EXPECT_NEAR(kept[0].dashes[1], 6.0, 1.0);
    EXPECT_NEAR(lengthOf(kept[0]), 174.0, 1.5);
}

TEST(Dashes, TwoDashesAreTwoLines) {
    Row row;
    row.dash(20, 32);
    row.dash(38, 50);
    EXPECT_EQ(row.joined().size(), 2U);
}

TEST(Dashes, RowGoesOnBehindAFilledArea) {
    Row row;
    for (const int x : {20, 38, 56, 74, 160, 178, 196, 214})
        row.dash(x, x + 12);
    row.fill(90, 10, 156, 50);
    const std::vector<Stroke> kept = row.joined();
    ASSERT_EQ(kept.size(), 1U);
    EXPECT_NEAR(lengthOf(kept[0]), 206.0, 1.5);
}

TEST(Dashes, RowsFarApartStayTwo) {
    Row row;
    for (const int x : {20, 38, 56, 74, 160, 178, 196, 214})
        row.dash(x, x + 12);
    EXPECT_EQ(row.joined().size(), 2U);
}

TEST(Dashes, DotsBetweenLongDashesBelongToThePattern) {
    Row row;
    for (int x = 20; x < 300; x += 50) {
        row.dash(x, x + 30);
        row.dash(x + 37, x + 42);
    }
    const std::vector<Stroke> kept = row.joined();
    ASSERT_EQ(kept.size(), 1U);
    ASSERT_EQ(kept[0].dashes.size(), 4U);
    EXPECT_NEAR(kept[0].dashes[0], 30.0, 1.0);
    EXPECT_NEAR(kept[0].dashes[2], 5.0, 1.0);
}

} // namespace
