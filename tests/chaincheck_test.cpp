// Whether curves follow the samples that they were fitted to.

#include <chaincheck.h>

#include "shapes/piece.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

using namespace ovtrace;

std::vector<Sample> row(double from, double to) {
    std::vector<Sample> samples;
    for (double x = from + 0.5; x < to; x += 1.0)
        samples.push_back({{x, 5.0}, 0.01, false});
    return samples;
}

TEST(ChainCheck, LineThroughItsSamplesFollowsThem) {
    EXPECT_TRUE(followsSamples(std::vector{linePiece({0, 5}, {20, 5})}, row(0, 20), false));
}

TEST(ChainCheck, ArcThatLeadsElsewhereDoesNot) {
    EXPECT_FALSE(followsSamples(std::vector{arcPiece({0, 5}, {20, 5}, 0.9)}, row(0, 20), false));
    EXPECT_FALSE(followsSamples(std::vector{arcPiece({0, 5}, {20, 5}, 40.0)}, row(0, 20), false));
}

TEST(ChainCheck, CurveThatLeavesAPartOutDoesNot) {
    EXPECT_FALSE(followsSamples(std::vector{linePiece({0, 5}, {14, 5})}, row(0, 20), false));
}

TEST(ChainCheck, TipOfAnAcuteCornerIsNoFault) {
    std::vector<Sample> samples;
    for (double x = 0.5; x < 20.0; x += 1.0)
        samples.push_back({{x, 5.0 + x / 10.0}, 0.01, false});
    for (double x = 19.5; x > 0.0; x -= 1.0)
        samples.push_back({{x, 9.5 - x / 10.0}, 0.01, false});
    // The sides meet at x = 22.5.
    const std::vector tip{linePiece({0, 5}, {22.5, 7.25}), linePiece({22.5, 7.25}, {0, 9.5})};
    EXPECT_TRUE(followsSamples(tip, samples, false));
    const std::vector far{linePiece({0, 5}, {60, 7.25}), linePiece({60, 7.25}, {0, 9.5})};
    EXPECT_FALSE(followsSamples(far, samples, false));
}

TEST(ChainCheck, ClosedCurveMayBeginAnywhere) {
    std::vector<Sample> samples;
    const Piece upper = arcPiece({0, 10}, {20, 10}, 1.0);
    const Piece lower = arcPiece({20, 10}, {0, 10}, 1.0);
    for (const Piece& piece : {upper, lower}) {
        for (int i = 0; i < 30; ++i)
            samples.push_back({pointAt(piece, i / 30.0), 0.01, false});
    }
    EXPECT_TRUE(followsSamples(std::vector{lower, upper}, samples, true));
    EXPECT_FALSE(followsSamples(std::vector{lower, linePiece({0, 10}, {20, 10})}, samples, true));
}

TEST(ChainCheck, RoundedSamplesMayBeAPixelOff) {
    std::vector<Sample> samples;
    for (int x = 0; x < 40; ++x)
        samples.push_back({{x + 0.5, double(x / 20)}, 0.29, false});
    EXPECT_TRUE(followsSamples(std::vector{linePiece({0, -0.5}, {40, 1.5})}, samples, false));
}

} // namespace
