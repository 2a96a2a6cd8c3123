// Whether pixels are mixed in stored levels or in light.

#include "support/colors.h"
#include "support/coverage.h"
#include "support/pixelview.h"

#include <lightevidence.h>

#include <gtest/gtest.h>

#include <cmath>

namespace {

using namespace ovtrace;
using coverage::ground;
using coverage::paint;
using coverage::paintInLight;

bool inDisk(double x, double y) {
    return std::hypot(x - 30.2, y - 29.7) < 21.3;
}
bool inTurnedSquare(double x, double y) {
    const double u = (x - 30.0) * 0.9 + (y - 30.0) * 0.43589;
    const double v = (y - 30.0) * 0.9 - (x - 30.0) * 0.43589;
    return std::fabs(u) < 18.3 && std::fabs(v) < 17.6;
}

/// Whether the light is told of a shape that is drawn either way.
template <typename Inside> void expectTold(QRgb below, QRgb color, Inside inside) {
    QImage stored = ground(60, 60, below);
    paint(stored, color, inside);
    EXPECT_EQ(lightOfEdges(viewOf(stored)), Light::Stored);
    QImage linear = ground(60, 60, below);
    paintInLight(linear, color, inside);
    EXPECT_EQ(lightOfEdges(viewOf(linear)), Light::Linear);
}

TEST(LightEvidence, EdgesSayHowTheyWereMixed) {
    expectTold(White, Black, inDisk);
    expectTold(White, Black, inTurnedSquare);
}

TEST(LightEvidence, ColoursSayItToo) {
    expectTold(Blue, Red, inTurnedSquare);
}

TEST(LightEvidence, NearlyAllPlacesAgree) {
    QImage linear = ground(60, 60, White);
    paintInLight(linear, Black, inTurnedSquare);
    const LightEvidence found = lightEvidence(viewOf(linear));
    EXPECT_GT(found.forLinear, 30);
    EXPECT_GT(found.forLinear, 8 * found.forStored);
}

TEST(LightEvidence, LittleOfItIsNone) {
    // Edges along the pixels lie anywhere between them by either light.
    QImage level = ground(40, 40, White);
    paintInLight(level, Black, [](double x, double y) { return x > 9.6 && y > 11.3 && x < 30.4; });
    EXPECT_EQ(lightOfEdges(viewOf(level)), Light::Stored);
    // Three places could be chance.
    QImage small = ground(12, 12, White);
    paintInLight(small, Black, [](double x, double y) { return x + y / 3.0 > 7.2 && y < 6.0; });
    EXPECT_EQ(lightOfEdges(viewOf(small)), Light::Stored);
    EXPECT_EQ(lightOfEdges(viewOf(ground(1, 1, White))), Light::Stored);
}

} // namespace
