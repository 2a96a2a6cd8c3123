#include "shapes/joining.h"
#include "shapes/regularise.h"
#include "support/outlinesamples.h"

#include <gtest/gtest.h>

using namespace ovtrace;

namespace {

ChainModel rectangle(double degrees) {
    const auto samples =
        coverageSamples(roundedRectangle({60.3, 50.7}, {31, 17}, 0, degrees), 0.005, 0.01);
    return segmentChain(samples, true, {});
}

ChainModel circle(Point centre, double radius, double noise) {
    return segmentChain(coverageSamples(circleOutline(centre, radius), noise, 0.01), true, {});
}

/// How far a direction is from the given angle, or from square to it.
double sineOrCosine(Point direction, double degrees) {
    const double angle = degrees * std::numbers::pi / 180.0;
    const Point truth{std::cos(angle), std::sin(angle)};
    return std::min(std::abs(cross(direction, truth)), std::abs(dot(direction, truth)));
}

} // namespace

TEST(Regularise, RightAnglesAreExact) {
    for (const double degrees : {7.0, 31.0, 59.0}) {
        ChainModel model = rectangle(degrees);
        ASSERT_EQ(model.carriers.size(), 4u);
        regularise(std::span(&model, 1));
        for (std::size_t k = 0; k < 4; ++k) {
            EXPECT_NEAR(dot(model.carriers[k].direction, model.carriers[(k + 1) % 4].direction),
                        0.0, 1e-15);
            EXPECT_NEAR(sineOrCosine(model.carriers[k].direction, degrees), 0.0, 1e-4);
        }
    }
}

TEST(Regularise, AxesAreExactButNotWhenTheSamplesSayOtherwise) {
    ChainModel straight = rectangle(0.0);
    ChainModel turned = rectangle(0.3);
    ChainModel models[] = {straight, turned};
    regularise(models);
    for (const Carrier& carrier : models[0].carriers)
        EXPECT_EQ(std::max(std::abs(carrier.direction.x), std::abs(carrier.direction.y)), 1.0);
    for (const Carrier& carrier : models[1].carriers)
        EXPECT_LT(std::max(std::abs(carrier.direction.x), std::abs(carrier.direction.y)), 0.99999);
}

TEST(Regularise, RingsAreConcentricAndEqualCirclesEqual) {
    ChainModel models[] = {circle({50.3, 40.2}, 30.0, 0.01), circle({50.3, 40.2}, 22.0, 0.01),
                           circle({150.8, 40.7}, 22.0, 0.01), circle({150.8, 40.7}, 22.5, 0.01)};
    for (const ChainModel& model : models)
        ASSERT_TRUE(model.isCircle);
    regularise(models);
    EXPECT_EQ(models[0].carriers[0].at, models[1].carriers[0].at);
    EXPECT_EQ(models[1].carriers[0].radius, models[2].carriers[0].radius);
    EXPECT_GT(models[3].carriers[0].radius, models[2].carriers[0].radius + 0.4);
    EXPECT_LT(distance(models[0].carriers[0].at, {50.3, 40.2}), 0.01);
}

TEST(Regularise, NothingToDo) {
    regularise({});
    ChainModel empty;
    regularise(std::span(&empty, 1));
    EXPECT_TRUE(empty.carriers.empty());
}
