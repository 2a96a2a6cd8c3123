#include "shapes/carrier.h"
#include "support/outlinesamples.h"

#include <gtest/gtest.h>

#include <algorithm>

using namespace ovtrace;

namespace {

Carrier line(Point at, Point towards) {
    Carrier carrier;
    carrier.at = at;
    carrier.direction = unit(towards - at);
    return carrier;
}

Carrier circle(Point centre, double radius, double turn) {
    Carrier carrier;
    carrier.kind = Carrier::Kind::Circle;
    carrier.at = centre;
    carrier.radius = radius;
    carrier.turn = turn;
    return carrier;
}

} // namespace

TEST(Carrier, MeetingsLieOnBoth) {
    const Carrier carriers[] = {line({0, 0}, {3, 1}), line({5, -2}, {4, 7}), circle({3, 2}, 4, 1),
                                circle({6, 1}, 3, -1)};
    for (const Carrier& a : carriers)
        for (const Carrier& b : carriers) {
            if (&a == &b)
                continue;
            const auto places = meetings(a, b);
            EXPECT_EQ(places.size(), a.isLine() && b.isLine() ? 1u : 2u);
            for (const Point& place : places) {
                EXPECT_NEAR(signedDistance(a, place), 0.0, 1e-12);
                EXPECT_NEAR(signedDistance(b, place), 0.0, 1e-12);
            }
        }
}

TEST(Carrier, WhatDoesNotMeet) {
    EXPECT_TRUE(meetings(line({0, 0}, {1, 0}), line({0, 1}, {1, 1})).empty());
    EXPECT_TRUE(meetings(line({0, 5}, {1, 5}), circle({0, 0}, 4, 1)).empty());
    EXPECT_TRUE(meetings(circle({0, 0}, 9, 1), circle({1, 0}, 4, 1)).empty());
    EXPECT_TRUE(meetings(circle({0, 0}, 4, 1), circle({0, 0}, 4, 1)).empty());
}

TEST(Carrier, DirectionAndSideAgree) {
    for (const Carrier& carrier :
         {line({0, 0}, {3, 1}), circle({3, 2}, 4, 1), circle({3, 2}, 4, -1)}) {
        const Point place = projected(carrier, {5.0, 4.5});
        EXPECT_NEAR(signedDistance(carrier, place), 0.0, 1e-12);
        const Point normal = turnedQuarter(directionAt(carrier, place));
        EXPECT_NEAR(signedDistance(carrier, place + normal * 0.25), 0.25, 1e-9);
    }
}

TEST(Carrier, CircleThroughSamplesRunsTheirWay) {
    const auto samples = coverageSamples(circleOutline({20.3, 20.6}, 9.0), 0.0, 0.01);
    std::vector<Sample> back(samples.rbegin(), samples.rend());
    for (const auto& [chain, turn] : {std::pair(samples, 1.0), std::pair(back, -1.0)}) {
        Moments moments(chain.front().at);
        for (const Sample& sample : chain)
            moments.add(sample.at, 1e4);
        const auto fit = circleCarrier(moments, chain);
        ASSERT_TRUE(fit);
        EXPECT_EQ(fit->turn, turn);
        EXPECT_NEAR(fit->radius, 9.0, 0.01);
    }
}

TEST(Carrier, LongArcsAreTwoPieces) {
    const Carrier carrier = circle({0, 0}, 5, 1);
    std::vector<Piece> pieces;
    appendPieces(carrier, {5, 0}, {0, -5}, pieces);
    ASSERT_EQ(pieces.size(), 2u);
    EXPECT_EQ(pieces[0].to, pieces[1].from);
    for (const Piece& piece : pieces) {
        EXPECT_NEAR(circleOf(piece).radius, 5.0, 1e-12);
        EXPECT_LT(piece.bulge, 1.0);
        EXPECT_GT(piece.bulge, 0.0);
    }
    pieces.clear();
    appendPieces(circle({0, 0}, 5, -1), {5, 0}, {0, -5}, pieces);
    ASSERT_EQ(pieces.size(), 1u);
    EXPECT_NEAR(pieces[0].bulge, -std::tan(std::acos(-1.0) / 8.0), 1e-12);
}
