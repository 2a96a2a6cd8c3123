#include "shapes/joining.h"
#include "support/outlinesamples.h"

#include <gtest/gtest.h>

using namespace ovtrace;

namespace {

std::vector<Piece> joined(const std::vector<Sample>& samples, bool closed,
                          const FitOptions& options = {}) {
    return joinChain(segmentChain(samples, closed, options), samples, options);
}

double sharpest(const std::vector<Piece>& pieces) {
    double greatest = 0.0;
    for (std::size_t k = 0; k < pieces.size(); ++k)
        greatest = std::max(
            greatest,
            std::abs(cross(endTangent(pieces[k]), startTangent(pieces[(k + 1) % pieces.size()]))));
    return greatest;
}

Outline ellipse(Point centre, double a, double b) {
    Outline outline = circleOutline({0, 0}, a);
    for (Point& p : outline)
        p = centre + Point{p.x, p.y * b / a};
    return outline;
}

} // namespace

TEST(Joining, EllipseIsAFewSmoothCurves) {
    const Outline outline = ellipse({70.3, 60.2}, 45.0, 25.0);
    const auto pieces = joined(coverageSamples(outline, 0.003, 0.01), true);
    EXPECT_LE(pieces.size(), 8u);
    EXPECT_LT(sharpest(pieces), 1e-9);
    for (std::size_t k = 0; k < outline.size(); k += 50) {
        double least = 1e9;
        for (const Piece& piece : pieces)
            least = std::min(least, distanceTo(piece, outline[k]));
        EXPECT_LT(least, 0.11);
    }
}

TEST(Joining, WithoutCubicsThereAreLinesAndArcsAlone) {
    FitOptions options;
    options.cubics = false;
    const auto pieces =
        joined(coverageSamples(ellipse({70.3, 60.2}, 45.0, 25.0), 0.003, 0.01), true, options);
    for (const Piece& piece : pieces)
        EXPECT_NE(piece.kind, PieceKind::Cubic);
    EXPECT_LE(pieces.size(), 24u);
}

TEST(Joining, CornerBetweenLineAndArc) {
    // A half disc: one straight side, one arc, two right angles.
    Outline outline;
    appendLine(outline, {60.2, 40.3}, {20.2, 40.3});
    appendArc(outline, {40.2, 40.3}, 20.0, 180.0, 360.0);
    const auto pieces = joined(coverageSamples(outline, 0.003, 0.01), true);
    ASSERT_LE(pieces.size(), 3u);
    for (const Point corner : {Point{60.2, 40.3}, Point{20.2, 40.3}}) {
        double least = 1e9;
        for (const Piece& piece : pieces)
            least = std::min(least, distance(piece.from, corner));
        EXPECT_LT(least, 0.05);
    }
}

TEST(Joining, PolygonWhereNothingFits) {
    const std::vector<Sample> samples{
        {{0, 0}, 0.01, false}, {{4, 0}, 0.01, false}, {{4, 0}, 0.01, false}, {{4, 3}, 0.01, false}};
    const auto pieces = polygonThrough(samples, true);
    ASSERT_EQ(pieces.size(), 3u);
    EXPECT_EQ(pieces.back().to, pieces.front().from);
    const auto open = polygonThrough(samples, false, Point{-1, 0}, Point{4, 5});
    ASSERT_EQ(open.size(), 4u);
    EXPECT_EQ(open.front().from, (Point{-1, 0}));
    EXPECT_EQ(open.back().to, (Point{4, 5}));
}

TEST(Joining, WholeCircleClosesOnItself) {
    Carrier circle;
    circle.kind = Carrier::Kind::Circle;
    circle.at = {10.1, 20.7};
    circle.radius = 3.3;
    circle.turn = -1.0;
    const auto pieces = wholeCircle(circle);
    ASSERT_EQ(pieces.size(), 2u);
    EXPECT_EQ(pieces[0].to, pieces[1].from);
    EXPECT_EQ(pieces[1].to, pieces[0].from);
    EXPECT_LT(areaOf(pieces[0]) + areaOf(pieces[1]), 0.0);
}

TEST(Joining, BluntEndOfRoundedPlacesGetsNoTip) {
    // Two sides that come together at 18 degrees but end where they are still 2 pixels apart.
    std::vector<Sample> samples;
    for (int k = 0; k < 30; ++k)
        samples.push_back({{0.0, 0.5 + k}, 0.2887, false});
    for (const double x : {0.5, 1.5})
        samples.push_back({{x, 30.0}, 0.2887, false});
    for (int k = 29; k >= 0; --k)
        samples.push_back({{std::round(2.0 + (29 - k) * 0.325), 0.5 + k}, 0.2887, false});
    const auto farthest = [&](const FitOptions& options) {
        double y = 0.0;
        for (const Piece& piece : joined(samples, false, options))
            y = std::max({y, piece.from.y, piece.to.y});
        return y;
    };
    FitOptions rounded;
    rounded.skipCost = std::numeric_limits<double>::infinity();
    rounded.mostOff = 0.9;
    EXPECT_LT(farthest(rounded), 32.0);
}
