// The place of an edge in one row of pixels.

#include "support/colors.h"

#include <profile.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

namespace {

using namespace ovtrace;

/// A row painted with a colour from each place to the next, by exact coverage.
struct Row {
    Row(QRgb ground, int width) : pixels(static_cast<std::size_t>(width), ground) {
        labels.width = width;
        labels.height = 1;
        labels.palette = {White, Black, Grey, Red};
        labels.plainColors = 4;
        labels.labels.assign(pixels.size(), 0);
    }
    void paint(double from, double to, QRgb color, std::uint16_t label) {
        for (std::size_t x = 0; x < pixels.size(); ++x) {
            const double begin = std::max(from, static_cast<double>(x));
            const double end = std::min(to, static_cast<double>(x) + 1.0);
            if (end <= begin)
                continue;
            const double share = end - begin;
            const auto mixed = [share](int below, int above) {
                return static_cast<int>(below * (1.0 - share) + above * share + 0.5);
            };
            const QRgb below = pixels[x];
            pixels[x] = qRgb(mixed(qRed(below), qRed(color)), mixed(qGreen(below), qGreen(color)),
                             mixed(qBlue(below), qBlue(color)));
            if (share > 0.5)
                labels.labels[x] = label;
        }
    }
    EdgePlace edgeAt(int crack) const {
        const PixelView view{pixels.data(), pixels.size(), labels.width, 1};
        return findEdge(PixelLine(view, labels, crack, 0, 1, 0), 0, [] { return 0.0; });
    }

    std::vector<QRgb> pixels;
    LabelImage labels;
};

TEST(Profile, EdgeBetweenTwoColoursLiesWhereTheCoverageSays) {
    for (double at = 5.05; at < 6.0; at += 0.1) {
        Row row(White, 12);
        row.paint(at, 12.0, Black, 1);
        const int crack = at < 5.5 ? 5 : 6;
        const EdgePlace place = row.edgeAt(crack);
        EXPECT_NEAR(crack + place.at, at, 0.004);
        EXPECT_FALSE(place.loose);
        EXPECT_FALSE(place.sharp);
        EXPECT_LT(place.sigma, 0.02);
    }
}

TEST(Profile, EdgeAlongThePixelsIsSharp) {
    Row row(White, 12);
    row.paint(5.0, 12.0, Black, 1);
    const EdgePlace place = row.edgeAt(5);
    EXPECT_EQ(place.at, 0.0);
    EXPECT_TRUE(place.sharp);
}

TEST(Profile, BothEdgesOfALineThatIsNowhereCoveredWhole) {
    Row row(White, 12);
    row.paint(5.3, 6.6, Black, 1);
    row.labels.labels[5] = row.labels.labels[6] = 1;
    EXPECT_NEAR(5 + row.edgeAt(5).at, 5.3, 0.06);
    EXPECT_NEAR(7 + row.edgeAt(7).at, 6.6, 0.06);
    // What is exact is the width.
    EXPECT_NEAR(2 + row.edgeAt(7).at - row.edgeAt(5).at, 1.3, 0.01);
}

TEST(Profile, LineBetweenTwoOtherColours) {
    Row row(White, 14);
    row.paint(6.0, 14.0, Grey, 2);
    row.paint(5.4, 6.6, Black, 1);
    row.labels.labels[5] = row.labels.labels[6] = 1;
    row.labels.labels[4] = 0;
    row.labels.labels[7] = 2;
    EXPECT_NEAR(5 + row.edgeAt(5).at, 5.4, 0.1);
    EXPECT_NEAR(7 + row.edgeAt(7).at, 6.6, 0.1);
}

TEST(Profile, LineBetweenTwoColoursThatAreNoMixesOfEachOther) {
    for (const double from : {5.1, 5.4, 5.8}) {
        const double to = from + 0.8;
        Row row(White, 14);
        row.paint(from + 0.4, 14.0, Red, 3);
        row.paint(from, to, Black, 1);
        // The line covers no pixel whole.
        row.labels.labels = {0, 0, 0, 0, 0, 1, 3, 3, 3, 3, 3, 3, 3, 3};
        EXPECT_NEAR(5 + row.edgeAt(5).at, from, 0.01);
        EXPECT_NEAR(6 + row.edgeAt(6).at, to, 0.01);
    }
}

TEST(Profile, WithoutPureColourThePlaceIsUncertain) {
    Row row(White, 4);
    for (std::size_t x = 0; x < 4; ++x)
        row.pixels[x] = qRgb(static_cast<int>(200 - 40 * x), static_cast<int>(200 - 40 * x),
                             static_cast<int>(200 - 40 * x));
    row.labels.labels = {0, 0, 1, 1};
    const EdgePlace place = row.edgeAt(2);
    EXPECT_TRUE(place.loose);
    EXPECT_GT(place.sigma, 0.1);
}

} // namespace
