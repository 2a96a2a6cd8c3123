// The colours of mixed pixels.

#include "support/colors.h"
#include "support/coverage.h"
#include "support/pixelview.h"

#include <mixlabels.h>

#include <gtest/gtest.h>

namespace {

using namespace ovtrace;
using coverage::ground;
using coverage::paint;

QRgb colorAt(const LabelImage& labels, int x, int y) {
    return labels.palette[labels.at(x, y)];
}

TEST(MixLabels, MixBelongsToWhatCoversItMost) {
    for (const double edge : {5.2, 5.4, 5.6, 5.8}) {
        QImage image = ground(12, 8, White);
        paint(image, Red, [edge](double x, double) { return x < edge; });
        const LabelImage labels = labelPixels(viewOf(image), {White, Red}, {});
        EXPECT_EQ(colorAt(labels, 4, 3), Red);
        EXPECT_EQ(colorAt(labels, 5, 3), edge > 5.5 ? Red : White);
        EXPECT_EQ(colorAt(labels, 6, 3), White);
        EXPECT_EQ(labels.strangePixels, 0U);
        EXPECT_EQ(labels.plainColors, 2U);
    }
}

TEST(MixLabels, MixIsNotTheThirdColourThatItLooksLike) {
    QImage image = ground(14, 10, White);
    paint(image, Black, [](double x, double) { return x < 5.55; });
    // The mixes are grey to within the roundings, but no grey is near.
    const LabelImage labels = labelPixels(viewOf(image), {White, Black, qRgb(116, 116, 116)}, {});
    for (int y = 0; y < 10; ++y)
        EXPECT_NE(colorAt(labels, 5, y), qRgb(116, 116, 116));
}

TEST(MixLabels, MixIsNotTheThirdColourThatItIsByChance) {
    // A slanting edge, some of whose pixels have the very colour of an area elsewhere.
    QImage image = ground(30, 40, White);
    paint(image, Black, [](double x, double y) { return x < 8.0 + y * 0.11; });
    const QRgb grey = image.pixel(10, 22);
    ASSERT_NE(grey, White);
    ASSERT_NE(grey, Black);
    paint(image, grey, [](double x, double y) { return x >= 20.0 && y < 10.0; });
    const LabelImage labels = labelPixels(viewOf(image), {White, Black, grey}, {});
    for (int y = 0; y < 40; ++y) {
        for (int x = 0; x < 16; ++x)
            EXPECT_NE(colorAt(labels, x, y), grey) << x << ' ' << y;
        EXPECT_EQ(colorAt(labels, 25, y), y < 10 ? grey : White);
    }
    // Where pixels are drawn one by one there is no chance.
    MixOptions exact;
    exact.hasMixes = false;
    EXPECT_EQ(colorAt(labelPixels(viewOf(image), {White, Black, grey}, exact), 10, 22), grey);
}

TEST(MixLabels, LineThinnerThanAPixelIsKept) {
    QImage image = ground(20, 12, White);
    paint(image, Black, [](double x, double) { return x < 3.0; });
    paint(image, Black, [](double x, double) { return x > 10.3 && x < 10.7; });
    const LabelImage labels = labelPixels(viewOf(image), {White, Black}, {});
    for (int y = 0; y < 12; ++y) {
        EXPECT_EQ(colorAt(labels, 10, y), Black);
        EXPECT_EQ(colorAt(labels, 9, y), White);
        EXPECT_EQ(colorAt(labels, 11, y), White);
    }
}

TEST(MixLabels, ThinPartsAreKeptBesideWideOnes) {
    QImage image = ground(24, 20, White);
    paint(image, Red, [](double x, double y) {
        return (x > 4.0 && x < 8.0) || (x > 6.0 && x < 20.0 && y > 10.2 && y < 10.6);
    });
    const LabelImage labels = labelPixels(viewOf(image), {White, Red}, {});
    for (int x = 4; x < 20; ++x)
        EXPECT_EQ(colorAt(labels, x, 10), Red) << x;
    EXPECT_EQ(colorAt(labels, 8, 9), White);
    EXPECT_EQ(colorAt(labels, 8, 11), White);
}

TEST(MixLabels, EndsOfThinPartsStayApart) {
    QImage image = ground(24, 12, White);
    paint(image, Red, [](double x, double y) {
        return y > 5.1 && y < 5.9 && ((x > 2.0 && x < 10.1) || (x > 10.9 && x < 20.0));
    });
    const LabelImage labels = labelPixels(viewOf(image), {White, Red}, {});
    EXPECT_EQ(colorAt(labels, 9, 5), Red);
    EXPECT_EQ(colorAt(labels, 10, 5), White);
    EXPECT_EQ(colorAt(labels, 11, 5), Red);
}

TEST(MixLabels, HalfOfARowIsTheRarerColours) {
    QImage image = ground(24, 12, White);
    paint(image, Red, [](double x, double y) {
        return (x > 8.0 && x < 12.0 && y < 5.0) || (x > 4.0 && x < 16.0 && y > 5.0 && y < 5.5);
    });
    const LabelImage labels = labelPixels(viewOf(image), {White, Red}, {});
    for (int x = 4; x < 16; ++x)
        EXPECT_EQ(colorAt(labels, x, 5), Red) << x;
}

TEST(MixLabels, LineBetweenTwoColoursIsKept) {
    const auto place = [](double x, double y) { return (x - 20.0) * 0.8 + (y - 15.0) * 0.6; };
    for (const double width : {0.8, 1.2, 1.6}) {
        QImage image = ground(40, 30, White);
        paint(image, Red, [&](double x, double y) { return place(x, y) > 0.0; });
        paint(image, Black,
              [&](double x, double y) { return std::fabs(place(x, y)) < width / 2.0; });
        // Whether black is known from elsewhere or not.
        const LabelImage known = labelPixels(viewOf(image), {White, Red, Black}, {});
        const LabelImage found = labelPixels(viewOf(image), {White, Red}, {});
        EXPECT_EQ(known.palette.size(), 3U);
        // What covers no pixel whole has no colour that can be read.
        if (width > 1.0) {
            EXPECT_EQ(found.palette.size(), 3U) << "the line has one colour";
        }
        for (int y = 2; y < 28; ++y) {
            const double middle = 20.0 - (y + 0.5 - 15.0) * 0.75;
            EXPECT_EQ(colorAt(known, static_cast<int>(middle), y), Black) << width << ' ' << y;
            for (int x = 0; x < 40; ++x) {
                const double off = place(x + 0.5, y + 0.5);
                if (std::fabs(off) > width / 2.0 + 0.8) {
                    EXPECT_EQ(colorAt(known, x, y), off < 0.0 ? White : Red);
                    EXPECT_EQ(colorAt(found, x, y), off < 0.0 ? White : Red);
                }
            }
        }
    }
}

TEST(MixLabels, LineOfAnUnknownColourBringsIt) {
    QImage image = ground(20, 12, White);
    paint(image, Red, [](double x, double) { return x > 10.1 && x < 10.9; });
    const LabelImage labels = labelPixels(viewOf(image), {White}, {});
    ASSERT_EQ(labels.palette.size(), 2U);
    EXPECT_EQ(labels.plainColors, 2U);
    MixOptions fixed;
    fixed.mayAddColors = false;
    EXPECT_EQ(labelPixels(viewOf(image), {White}, fixed).palette.size(), 1U);
}

TEST(MixLabels, ThinLinesThatTakeMuchOfTheImageBringTheirColour) {
    // A quarter of the image, and hardly a pixel of it whole.
    QImage image = ground(60, 60, White);
    paint(image, Red, [](double x, double y) {
        const double along = x + y / 3.0;
        return along - 6.0 * std::floor(along / 6.0) < 1.3;
    });
    const LabelImage labels = labelPixels(viewOf(image), {White}, {});
    ASSERT_EQ(labels.palette.size(), 2U);
    EXPECT_EQ(labels.plainColors, 2U) << "no group of similar colours";
    std::size_t colored = 0;
    for (const std::uint16_t label : labels.labels)
        colored += label;
    EXPECT_GT(colored, labels.labels.size() / 8);
    EXPECT_LT(colored, labels.labels.size() / 3);
}

TEST(MixLabels, NoiseNeitherHidesAreasNorMakesThem) {
    QImage image = ground(40, 30, White);
    paint(image, Grey, [](double x, double y) { return x > 9.4 && x < 25.7 && y > 8 && y < 20; });
    addNoise(image, 6, 7);
    MixOptions options;
    options.noise = 9;
    options.tolerance = 24.0;
    const LabelImage labels = labelPixels(viewOf(image), {White, Grey}, options);
    for (int y = 9; y < 19; ++y) {
        EXPECT_EQ(colorAt(labels, 8, y), White);
        for (int x = 10; x < 25; ++x)
            EXPECT_EQ(colorAt(labels, x, y), Grey) << x << ' ' << y;
        EXPECT_EQ(colorAt(labels, 26, y), White);
    }
    EXPECT_EQ(labels.noise, 9);
}

TEST(MixLabels, WideEdgesAreMixesOfBothSides) {
    QImage image = ground(30, 8, White);
    for (int y = 0; y < 8; ++y) {
        for (int x = 0; x < 30; ++x) {
            const int value = x < 10 ? 255 : x < 18 ? 255 - (x - 9) * 28 : 0;
            image.setPixel(x, y, qRgb(value, value, value));
        }
    }
    const LabelImage labels = labelPixels(viewOf(image), {White, Black}, {});
    EXPECT_EQ(labels.strangePixels, 0U);
    EXPECT_EQ(labels.palette.size(), 2U);
    EXPECT_EQ(colorAt(labels, 9, 4), White);
    EXPECT_EQ(colorAt(labels, 18, 4), Black);
}

} // namespace
