// Where ends of strokes meet.

#include "strokeends.h"

#include "pace.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

using namespace ovtrace;

namespace {

/// A letter o: an arc that is open below, and a line that closes it and nearly touches its circle.
struct LetterO {
    LetterO() {
        const Point center{31.5, 31.0};
        Stroke arc;
        arc.carrier.kind = Carrier::Kind::Circle;
        arc.carrier.at = center;
        arc.carrier.radius = 5.9;
        arc.ends[0] = {projected(arc.carrier, {28.1, 35.6}), 1, 1};
        arc.ends[1] = {projected(arc.carrier, {36.0, 34.8}), 1, 0};
        Stroke line;
        line.carrier.direction = unit(Point{-13.2, 1.2});
        line.carrier.at = {38.7, 35.8};
        line.ends[0] = {{38.7, 35.8}, 0, 1};
        line.ends[1] = {{25.5, 37.0}, 0, 0};
        strokes = {arc, line};
        for (Stroke& stroke : strokes)
            stroke.width = 2.8;
        ink = {64, 64, std::vector<std::uint8_t>(64 * 64)};
        for (int y = 0; y < 64; ++y)
            for (int x = 0; x < 64; ++x) {
                const double off = std::abs(distance({x + 0.5, y + 0.5}, center) - 5.9);
                const double level = std::clamp(1.9 - off, 0.0, 1.0);
                ink.levels[ink.indexOf(x, y)] = static_cast<std::uint8_t>(255.0 * level);
            }
    }

    std::vector<Stroke> strokes;
    InkLevels ink;
};

TEST(StrokeEnds, BothEndsDoNotMeetInTheOnePlaceWhereTheirCurvesDo) {
    LetterO o;
    Pace pace(nullptr);
    joinEnds(o.strokes, o.ink, {0.25, true, false}, pace);
    for (const Stroke& stroke : o.strokes)
        EXPECT_GT(distance(stroke.start(), stroke.finish()), stroke.width);
}

} // namespace
