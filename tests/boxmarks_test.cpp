// What is near boxes, by a grid of marks against all pairs.

#include <boxmarks.h>

#include "support/randominput.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <span>

namespace {

using namespace ovtrace;

/// In tenths of pixels.
Box randomBox(RandomInput& random, int most) {
    const Point at{random.number(-200, 1800) / 10.0, random.number(-200, 1300) / 10.0};
    return {at, at + Point{random.number(0, most) / 10.0, random.number(0, most) / 10.0}};
}

bool meet(const Box& a, const Box& b) {
    return a.least.x <= b.greatest.x && b.least.x <= a.greatest.x && a.least.y <= b.greatest.y &&
           b.least.y <= a.greatest.y;
}

TEST(BoxMarks, NoBoxThatMeetsAnotherIsMissed) {
    RandomInput random(5);
    int far = 0;
    for (int round = 0; round < 200; ++round) {
        std::vector<Box> boxes;
        Box all{{0, 0}, {0, 0}};
        for (int i = 0; i < 20; ++i) {
            boxes.push_back(randomBox(random, i % 4 == 0 ? 600 : 80));
            extend(all, boxes.back().least);
            extend(all, boxes.back().greatest);
        }
        BoxMarks marks(all);
        const std::span marked = std::span(boxes).first(3);
        for (const Box& box : marked)
            marks.mark(box);
        for (const Box& box : boxes) {
            const bool meets = std::any_of(marked.begin(), marked.end(),
                                           [&](const Box& other) { return meet(box, other); });
            EXPECT_TRUE(!meets || marks.isNear(box));
            far += marks.isNear(box) ? 0 : 1;
        }
    }
    EXPECT_GT(far, 1000);
}

TEST(BoxMarks, WhatIsFarAwayIsNotNear) {
    BoxMarks marks({{0, 0}, {500, 500}});
    marks.mark({{10, 10}, {20, 20}});
    EXPECT_TRUE(marks.isNear({{20, 20}, {30, 30}}));
    EXPECT_FALSE(marks.isNear({{200, 10}, {210, 20}}));
    EXPECT_FALSE(marks.isNear({{10, 200}, {20, 210}}));
}

} // namespace
