// Strokes that may be one are found without looking at all pairs.

#include "mergecandidates.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>

using namespace ovtrace;

namespace {

constexpr int Width = 900;
constexpr int Height = 700;

Stroke lineOf(Point from, Point to, double width) {
    Stroke stroke;
    stroke.carrier.at = middle(from, to);
    stroke.carrier.direction = unit(to - from);
    stroke.ends[0].at = from;
    stroke.ends[1].at = to;
    stroke.width = width;
    return stroke;
}

/// An arc from `from` on by steps of a turn whose sine and cosine are 0.28 and 0.96.
Stroke arcOf(Point centre, Point from, int steps, double width) {
    Stroke stroke;
    stroke.carrier.kind = Carrier::Kind::Circle;
    stroke.carrier.at = centre;
    stroke.carrier.radius = distance(centre, from);
    stroke.carrier.turn = 1.0;
    stroke.ends[0].at = from;
    Point v = from - centre;
    for (int k = 0; k < steps; ++k)
        v = {0.96 * v.x - 0.28 * v.y, 0.28 * v.x + 0.96 * v.y};
    stroke.ends[1].at = centre + v;
    stroke.width = width;
    return stroke;
}

/// What has to be looked at as a part of `a`, by all that is asked before ink is: see merging.cpp.
bool mayBeOne(const Stroke& a, const Stroke& b) {
    if (a.carrier.isLine() != b.carrier.isLine() || !likeWidths(a.width, b.width))
        return false;
    const double la = lengthOf(a);
    const double lb = lengthOf(b);
    const double most = mergeGap(a.width, b.width, la + lb);
    if (!a.carrier.isLine()) {
        const double reach = 3.0 * mergeReach(a.width);
        return std::abs(signedDistance(a.carrier, b.start())) <= reach &&
               std::abs(signedDistance(a.carrier, b.finish())) <= reach &&
               (std::min(placeAlong(a, b.start()), placeAlong(a, b.finish())) - la <= most ||
                circumferenceOf(a) -
                        std::max(placeAlong(a, b.start()), placeAlong(a, b.finish())) <=
                    most);
    }
    const Stroke& guide = lb > la ? b : a;
    const Stroke& other = lb > la ? a : b;
    const double away = std::abs(signedDistance(guide.carrier, other.start())) +
                        std::abs(signedDistance(guide.carrier, other.finish()));
    if (away > 2.0 * mergeReach(std::max(a.width, b.width)) ||
        std::abs(dot(a.carrier.direction, b.carrier.direction)) < LineAgreement)
        return false;
    const double from = std::min(placeAlong(a, b.start()), placeAlong(a, b.finish()));
    const double to = std::max(placeAlong(a, b.start()), placeAlong(a, b.finish()));
    return from - la <= most && -to <= most;
}

bool isInside(Point p) {
    return p.x >= 0.0 && p.y >= 0.0 && p.x <= Width && p.y <= Height;
}

std::vector<Stroke> randomStrokes(unsigned seed, int count) {
    std::mt19937 random(seed);
    const auto upTo = [&](unsigned most) {
        return static_cast<double>(random() % (most * 16U)) / 16.0;
    };
    std::vector<Stroke> strokes;
    for (int i = 0; i < count; ++i) {
        // Half of them carry on where others lie, as parts of one line do.
        const bool more = i % 2 == 1 && !strokes.empty() && strokes.back().carrier.isLine();
        const Point from =
            more ? beyond(strokes.back(), 1, upTo(60)) : Point{upTo(Width), upTo(Height)};
        const double width = 1.0 + upTo(i % 9 == 0 ? 30U : 4U);
        if (!more && i % 5 == 2) {
            const Point centre{upTo(Width), upTo(Height)};
            const Stroke arc = arcOf(centre, from, 1 + static_cast<int>(upTo(8)), width);
            if (isInside(arc.finish()))
                strokes.push_back(arc);
            continue;
        }
        const double length = 2.0 + upTo(i % 3 == 0 ? 400U : 30U);
        const Point aside{upTo(8) - 4.0, upTo(8) - 4.0};
        const Point direction =
            more ? strokes.back().carrier.direction : unit(Point{upTo(9) - 4.5, upTo(9) - 4.46});
        const Point to = from + direction * length + aside;
        if (isInside(from) && isInside(to))
            strokes.push_back(lineOf(from, to, width));
    }
    return strokes;
}

TEST(MergeCandidates, HoldAllThatAllPairsGive) {
    std::size_t pairs = 0;
    std::size_t looked = 0;
    for (unsigned seed = 1; seed <= 20; ++seed) {
        const std::vector<Stroke> strokes = randomStrokes(seed, 150);
        MergeCandidates candidates(strokes, Width, Height);
        for (int i = 0; i < static_cast<int>(strokes.size()); ++i) {
            const std::vector<int>& found = candidates.of(i);
            EXPECT_TRUE(std::ranges::is_sorted(found));
            looked += found.size();
            for (int j = 0; j < static_cast<int>(strokes.size()); ++j) {
                if (i == j || !mayBeOne(strokes[static_cast<std::size_t>(i)],
                                        strokes[static_cast<std::size_t>(j)]))
                    continue;
                ++pairs;
                EXPECT_TRUE(std::ranges::binary_search(found, j)) << seed << ' ' << i << ' ' << j;
            }
        }
    }
    EXPECT_GT(pairs, 900U);
    EXPECT_LT(looked, 20U * 150U * 150U);
}

TEST(MergeCandidates, FollowStrokesThatGrow) {
    std::vector<Stroke> strokes{lineOf({20, 50}, {60, 50}, 3), lineOf({600, 50}, {640, 50}, 3)};
    MergeCandidates candidates(strokes, Width, Height);
    EXPECT_EQ(candidates.of(0), std::vector<int>{0});
    strokes[0] = lineOf({20, 50}, {400, 50}, 3);
    candidates.grew(0);
    EXPECT_EQ(candidates.of(0), (std::vector<int>{0, 1}));
    EXPECT_EQ(candidates.of(1), (std::vector<int>{0, 1}));
}

TEST(MergeCandidates, GrowWithTheStrokesAndNotWithTheirPairs) {
    const auto lookedAt = [](int rows) {
        std::vector<Stroke> strokes;
        for (int y = 0; y < rows; ++y)
            for (int x = 0; x < rows; ++x)
                strokes.push_back(
                    lineOf({20.0 + 40 * x, 20.0 + 40 * y}, {30.0 + 40 * x, 20.0 + 40 * y}, 2));
        MergeCandidates candidates(strokes, 40 * rows + 40, 40 * rows + 40);
        std::size_t looked = 0;
        for (int i = 0; i < static_cast<int>(strokes.size()); ++i)
            looked += candidates.of(i).size();
        return looked;
    };
    EXPECT_LT(lookedAt(40), 5U * lookedAt(20));
}

TEST(MergeCandidates, OfAStrokeThatGrowsPieceByPieceAreReadOnce) {
    const auto readBy = [](int pieces) {
        std::vector<Stroke> strokes;
        for (int y = 0; y < 12; ++y)
            for (int x = 0; x < pieces; ++x)
                strokes.push_back(
                    lineOf({20.0 + 8 * x, 20.0 + 8 * y}, {26.0 + 8 * x, 20.0 + 8 * y}, 2));
        MergeCandidates candidates(strokes, 8 * pieces + 40, 140);
        for (int x = 1; x < pieces; ++x) {
            EXPECT_TRUE(std::ranges::binary_search(candidates.of(0), x));
            strokes[static_cast<std::size_t>(x)].dropped = true;
            strokes[0].ends[1].at = strokes[static_cast<std::size_t>(x)].ends[1].at;
            candidates.grew(0);
        }
        EXPECT_FALSE(std::ranges::binary_search(candidates.of(0), pieces - 1));
        return candidates.readCount();
    };
    EXPECT_LT(readBy(400), 5U * readBy(100));
}

} // namespace
