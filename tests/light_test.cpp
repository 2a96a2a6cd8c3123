// Stored levels and the light that they stand for.

#include <light.h>
#include <mixing.h>

#include <gtest/gtest.h>

#include <cmath>

namespace {

using namespace ovtrace;

TEST(Light, LevelsAreThoseOfTheCurve) {
    for (int stored = 0; stored < 256; ++stored) {
        const double level = stored / 255.0;
        const double light =
            level <= 0.04045 ? level / 12.92 : std::pow((level + 0.055) / 1.055, 2.4);
        EXPECT_NEAR(linearLevel(stored), 255.0 * light, 1e-10) << stored;
    }
    EXPECT_EQ(linearLevel(0), 0.0);
    EXPECT_EQ(linearLevel(255), 255.0);
}

TEST(Light, LevelsComeBack) {
    for (int stored = 0; stored < 256; ++stored)
        EXPECT_NEAR(storedLevel(linearLevel(stored)), stored, 1e-9);
    const double between = (linearLevel(99) + linearLevel(100)) / 2.0;
    EXPECT_NEAR(storedLevel(between), 99.5, 1e-9);
    EXPECT_GT(storedLevel(260.0), 255.0);
    EXPECT_LT(storedLevel(-1.0), 0.0);
}

TEST(Light, HalfOfTheLightOfWhiteIsAtMoreThanHalfOfTheLevels) {
    const QRgb black = qRgb(0, 0, 0);
    const QRgb white = qRgb(255, 255, 255);
    const QRgb half = qRgb(188, 188, 188); // 255 * 0.5^(1 / 2.4) * 1.055 - 0.055 * 255 = 187.5
    EXPECT_NEAR(ColorAxis(black, white, Light::Linear).position(half), 0.5, 0.005);
    EXPECT_NEAR(ColorAxis(black, white).position(half), 188.0 / 255.0, 1e-9);
}

TEST(Light, MixesOfColoursInLightAreOffTheirWayInStoredLevels) {
    const QRgb red = qRgb(255, 0, 0);
    const QRgb green = qRgb(0, 255, 0);
    const QRgb half = qRgb(188, 188, 0);
    const ColorAxis linear(red, green, Light::Linear);
    const ColorAxis stored(red, green, Light::Stored);
    EXPECT_NEAR(linear.position(half), 0.5, 1e-9);
    EXPECT_LT(linear.residual(mixColor(half, Light::Linear)), 1.0);
    EXPECT_GT(stored.residual(mixColor(half)), 50.0);
}

TEST(Light, AStepOfAllChannelsIsAsMuchAsTheirContrast) {
    EXPECT_NEAR(ColorAxis(qRgb(0, 0, 0), qRgb(255, 255, 255)).stepOfAll(), 1.0 / 255.0, 1e-12);
    EXPECT_NEAR(ColorAxis(qRgb(0, 0, 0), qRgb(0, 100, 0)).stepOfAll(), 0.01, 1e-12);
}

TEST(Light, ResidualsAreInStoredLevels) {
    const ColorAxis axis(qRgb(0, 0, 0), qRgb(0, 255, 0), Light::Linear);
    const QRgb off = qRgb(20, 100, 0);
    EXPECT_NEAR(axis.residual(mixColor(off, Light::Linear)), 20.0, 1e-6);
}

} // namespace
