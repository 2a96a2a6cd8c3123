// What the ends of strokes say about the pen.

#include "strokecaps.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

using namespace ovtrace;

namespace {

/// A stroke along y = 20 from x = 10 to x = 40, grey over one pixel, with cut or round ends.
InkLevels drawn(double width, bool round) {
    InkLevels ink{60, 40, {}};
    ink.levels.resize(60U * 40U);
    for (int y = 0; y < 40; ++y)
        for (int x = 0; x < 60; ++x) {
            const Point p{x + 0.5, y + 0.5};
            const double along = std::max({10.0 - p.x, p.x - 40.0, 0.0});
            const double aside = std::abs(p.y - 20.0);
            const double far = round ? std::sqrt(along * along + aside * aside) - width / 2.0
                                     : std::max(aside - width / 2.0, along > 0.0 ? along : -9.0);
            const double level = std::clamp(0.5 - far, 0.0, 1.0);
            ink.levels[ink.indexOf(x, y)] = static_cast<std::uint8_t>(level * 255.0);
        }
    return ink;
}

Stroke strokeAlong(double width) {
    Stroke stroke;
    stroke.ends[0].at = {10.0, 20.0};
    stroke.ends[1].at = {40.0, 20.0};
    Moments support(stroke.start());
    for (int x = 10; x <= 40; ++x)
        support.add({static_cast<double>(x), 20.0}, 1.0);
    stroke.carrier = lineCarrier(support, stroke.start(), stroke.finish());
    stroke.width = width;
    return stroke;
}

TEST(StrokeCaps, RoundEndIsRoundAndCutEndIsNot) {
    for (const double width : {3.0, 5.0, 8.0}) {
        const Stroke stroke = strokeAlong(width);
        const Point cutTip{40.0, 20.0};
        const Point roundTip{40.0 + width / 2.0, 20.0};
        EXPECT_NEAR(capAt(drawn(width, false), stroke, 1, cutTip).rounding, 0.0, 0.02) << width;
        EXPECT_GT(capAt(drawn(width, true), stroke, 1, roundTip).rounding, 0.07) << width;
    }
}

TEST(StrokeCaps, ManyEndsDecideWhatOneLeavesOpen) {
    const Measure grey{0.1, false, false};
    const CapSample cut{3.0, 0.0, 0.9};
    const CapSample round{3.0, 0.028, 0.9};
    EXPECT_EQ(penRoundness({cut}, grey), 0.0);
    EXPECT_EQ(penRoundness(std::vector<CapSample>(60, cut), grey), -1.0);
    EXPECT_EQ(penRoundness(std::vector<CapSample>(60, round), grey), 1.0);
    EXPECT_EQ(penRoundness({}, grey), 0.0);
    // Without blur, three are enough, and two nearly.
    EXPECT_EQ(penRoundness(std::vector<CapSample>(3, {3.0, 0.0, 1.0}), grey), -1.0);
    EXPECT_LT(penRoundness(std::vector<CapSample>(2, {3.0, 0.0, 1.0}), grey), -0.5);
}

TEST(StrokeCaps, NarrowEndsOfRaggedEdgesTellNothing) {
    const Measure ragged{0.3, true, true};
    EXPECT_EQ(penRoundness(std::vector<CapSample>(60, {3.0, 0.14, 1.0}), ragged), 0.0);
    EXPECT_EQ(penRoundness(std::vector<CapSample>(60, {6.0, 0.14, 1.0}), ragged), 1.0);
    EXPECT_EQ(penRoundness(std::vector<CapSample>(60, {6.0, 0.01, 1.0}), ragged), -1.0);
}

TEST(StrokeCaps, LittleMoreSuretyMovesEndsALittle) {
    for (const double width : {1.0, 2.0, 3.0, 6.0}) {
        EXPECT_EQ(capDepth(-1.0, width), 0.0);
        EXPECT_LE(capDepth(1.0, width), width / 2.0);
        for (int k = -10; k < 10; ++k) {
            const double step = capDepth((k + 1) / 10.0, width) - capDepth(k / 10.0, width);
            EXPECT_GT(step, 0.0);
            EXPECT_LT(step, 0.04 * width);
        }
    }
}

} // namespace
