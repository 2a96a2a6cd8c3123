#include "support/conversions.h"

#include <blur.h>
#include <blurkernels.h>

#include <gtest/gtest.h>

#include <limits>

using namespace ovtrace;

namespace {

/// A row of greys with steps between them, repeated on every row but slightly brighter.
PixelImage stepped(int width, int height) {
    QList<QList<char>> pixels;
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const char value = static_cast<char>((x * 37 + y * 11) % 200 - 100);
            pixels.append({value, static_cast<char>(-value), static_cast<char>(value / 2), 127});
        }
    }
    return imageOf(width, height, pixels);
}

QList<char> blurred(const PixelImage& image, float radius, float delta) {
    PixelImage copy = toPixels(image.width, image.height, toBytes(image));
    blur(copy, radius, delta);
    return toBytes(copy);
}

PixelImage uniform(int width, int height, char value) {
    return imageOf(width, height,
                   QList<QList<char>>(qsizetype(width) * height, {value, value, value, value}));
}

/// The red channel of pixel (x, y).
char firstChannel(const QList<char>& data, int width, int x, int y) {
    return data[(qsizetype(y) * width + x) * 4];
}

} // namespace

TEST(BlurKernels, HaveTheirWeights) {
    const QList<QList<double>> kernels{
        {0.27901, 0.44198, 0.27901},
        {0.135336, 0.228569, 0.272192, 0.228569, 0.135336},
        {0.086776, 0.136394, 0.178908, 0.195843, 0.178908, 0.136394, 0.086776},
        {0.063327, 0.093095, 0.122589, 0.144599, 0.152781, 0.144599, 0.122589, 0.093095, 0.063327},
        {0.049692, 0.069304, 0.089767, 0.107988, 0.120651, 0.125194, 0.120651, 0.107988, 0.089767,
         0.069304, 0.049692}};
    for (int radius = 1; radius <= MaxBlurRadius; ++radius) {
        const auto kernel = blurKernel(radius);
        EXPECT_EQ(QList<double>(kernel.begin(), kernel.end()), kernels[radius - 1]);
    }
}

TEST(Blur, FloorsAndCapsTheRadius) {
    const PixelImage image = stepped(30, 20);
    EXPECT_EQ(blurred(image, 0.9F, 1024), toBytes(image));
    EXPECT_EQ(blurred(image, -3.0F, 1024), toBytes(image));
    EXPECT_NE(blurred(image, 1.0F, 1024), toBytes(image));
    EXPECT_EQ(blurred(image, 1.9F, 1024), blurred(image, 1.0F, 1024));
    EXPECT_EQ(blurred(image, 7.5F, 1024), blurred(image, 5.0F, 1024));
    EXPECT_NE(blurred(image, 5.0F, 1024), blurred(image, 4.0F, 1024));
}

TEST(Blur, RadiusThatNoIntHoldsDoesNothing) {
    const PixelImage image = stepped(10, 10);
    for (const float radius :
         {std::numeric_limits<float>::infinity(), 3e9F, std::numeric_limits<float>::quiet_NaN()})
        EXPECT_EQ(blurred(image, radius, 1024), toBytes(image));
}

TEST(Blur, DeltaCountsByItsSize) {
    const PixelImage image = stepped(30, 20);
    EXPECT_EQ(blurred(image, 2, -10.0F), blurred(image, 2, 10.0F));
    EXPECT_EQ(blurred(image, 2, 10.9F), blurred(image, 2, 10.0F));
    EXPECT_NE(blurred(image, 2, 10.0F), blurred(image, 2, 1024.0F));
    EXPECT_EQ(blurred(image, 2, 5000.0F), blurred(image, 2, 1024.0F));
}

TEST(Blur, DeltaZeroSetsEveryChangeBack) {
    const PixelImage image = stepped(30, 20);
    EXPECT_EQ(blurred(image, 3, 0.0F), toBytes(image));
}

TEST(Blur, DeltaThatNoIntHoldsSetsEveryPixelBack) {
    const PixelImage image = stepped(30, 20);
    EXPECT_EQ(blurred(image, 3, std::numeric_limits<float>::quiet_NaN()), toBytes(image));
    EXPECT_EQ(blurred(image, 3, 3e9F), toBytes(image));
}

TEST(Blur, UniformImageMayDropByOneStep) {
    // 3 * 0.27901 + 3 * 0.44198 + 3 * 0.27901 is just below 3 and is floored; then 2 is exact.
    EXPECT_EQ(3 * 0.27901 + 3 * 0.44198 + 3 * 0.27901, 2.9999999999999996);
    const PixelImage image = uniform(9, 9, 3);
    const QList<char> result = blurred(image, 1, 1024);
    EXPECT_EQ(firstChannel(result, 9, 4, 4), 2);
    EXPECT_EQ(blurred(image, 1, 3), toBytes(image)) << "four channels by one are more than 3";
}

TEST(Blur, ColumnZeroTakesNoPartInItsOwnMean) {
    // Row 0 is left out of the vertical pass, too: look at a row in the middle.
    QList<QList<char>> pixels;
    for (int y = 0; y < 7; ++y) {
        for (int x = 0; x < 7; ++x) {
            const char value = x == 0 ? 100 : 40;
            pixels.append({value, value, value, value});
        }
    }
    const QList<char> result = blurred(imageOf(7, 7, pixels), 1, 1024);
    // The mean of column 1 alone: (40 * w) / w, passed on by a vertical pass over equal rows.
    EXPECT_LE(firstChannel(result, 7, 0, 3), 40);
    EXPECT_GE(firstChannel(result, 7, 0, 3), 38);
    EXPECT_LE(firstChannel(result, 7, 1, 3), 40) << "column 1 does not see column 0 either";
}

TEST(Blur, OnePixelWideImagesAreStoredAsZero) {
    const QList<char> wide = blurred(uniform(1, 5, 60), 1, 1024);
    EXPECT_EQ(wide, QList<char>(20, 0));
    const QList<char> high = blurred(uniform(5, 1, 60), 1, 1024);
    EXPECT_EQ(high, QList<char>(20, 0));
    EXPECT_EQ(blurred(uniform(1, 5, 60), 1, 239), QList<char>(20, 60))
        << "a difference of 240 is too much here";
}
