// Chains of which a part is known well and the rest is not.

#include <plainjoining.h>

#include "shapes/piece.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

using namespace ovtrace;

/// A line along y = 5 up to x = 8, three doubtful places, one along x = 12 from y = 8 on.
struct Bend {
    Bend() {
        for (int x = 0; x < 8; ++x)
            samples.push_back({{x + 0.5, 5.0}, 0.01, false});
        samples.push_back({{9.0, 4.0}, 0.29, true});
        samples.push_back({{11.0, 4.0}, 0.29, true});
        samples.push_back({{13.0, 6.0}, 0.29, true});
        for (int y = 8; y < 16; ++y)
            samples.push_back({{12.0, y + 0.5}, 0.01, false});
        add(0, 7);
        add(11, 18);
    }
    void add(int first, int last) {
        Moments support(samples[std::size_t(first)].at);
        for (int i = first; i <= last; ++i)
            support.add(samples[std::size_t(i)].at, 1e4);
        Carrier line =
            lineCarrier(support, samples[std::size_t(first)].at, samples[std::size_t(last)].at);
        line.first = first;
        line.last = last;
        model.carriers.push_back(line);
    }
    std::vector<Piece> joined(std::optional<Point> start, std::optional<Point> end) const {
        return joinPlainly(model, samples, samples, start, end);
    }

    std::vector<Sample> samples;
    ChainModel model;
};

void expectConnected(const std::vector<Piece>& pieces) {
    for (std::size_t i = 1; i < pieces.size(); ++i)
        EXPECT_EQ(pieces[i].from, pieces[i - 1].to);
}

TEST(PlainJoining, DoubtfulPlacesAreAPolygonBetweenTheLines) {
    const std::vector<Piece> pieces = Bend().joined(Point{0.0, 5.0}, Point{12.0, 16.0});
    ASSERT_EQ(pieces.size(), 6U);
    expectConnected(pieces);
    EXPECT_EQ(pieces.front().from, (Point{0.0, 5.0}));
    EXPECT_EQ(pieces[1].to, (Point{9.0, 4.0}));
    EXPECT_EQ(pieces[3].to, (Point{13.0, 6.0}));
    EXPECT_EQ(pieces.back().to, (Point{12.0, 16.0}));
}

TEST(PlainJoining, LinesMeetWhereThePlacesBetweenLieAlongThem) {
    Bend bend;
    bend.samples[8].at = {9.0, 5.1};
    bend.samples[9].at = {11.0, 5.3};
    bend.samples[10].at = {11.8, 7.0};
    bend.samples[7].at = {11.5, 5.0};
    bend.samples[11].at = {12.0, 6.0};
    const std::vector<Piece> pieces = bend.joined(Point{0.0, 5.0}, Point{12.0, 16.0});
    ASSERT_EQ(pieces.size(), 2U);
    EXPECT_NEAR(pieces[0].to.x, 12.0, 1e-6);
    EXPECT_NEAR(pieces[0].to.y, 5.0, 1e-6);
}

TEST(PlainJoining, ClosedChainsEndWhereTheyBegin) {
    Bend bend;
    bend.model.closed = true;
    const std::vector<Piece> pieces = bend.joined({}, {});
    ASSERT_FALSE(pieces.empty());
    expectConnected(pieces);
    EXPECT_EQ(pieces.back().to, pieces.front().from);
}

TEST(PlainJoining, CarriersOfFewExactPlacesAreNone) {
    Bend bend;
    for (std::size_t i = 0; i < bend.samples.size(); ++i)
        bend.samples[i].loose = i % 8 >= 3;
    EXPECT_TRUE(bend.joined(Point{0.0, 5.0}, Point{12.0, 16.0}).empty());
}

} // namespace
