#include "shapes/flatten.h"
#include "shapes/piece.h"

#include <gtest/gtest.h>

#include <algorithm>

using namespace ovtrace;

namespace {

std::vector<Point> flattened(const Piece& piece, double tolerance) {
    std::vector<Point> points{piece.from};
    flatten(piece, tolerance, points);
    return points;
}

/// The farthest that the middles of the chords lie from the piece, which is looked at in so many
/// places.
double deviation(const Piece& piece, const std::vector<Point>& points) {
    constexpr int Places = 20000;
    double most = 0.0;
    for (std::size_t i = 1; i < points.size(); ++i) {
        const Point chord = middle(points[i - 1], points[i]);
        double least = distance(chord, piece.from);
        for (int k = 1; k <= Places; ++k)
            least = std::min(least, distance(chord, pointAt(piece, double(k) / Places)));
        most = std::max(most, least);
    }
    return most;
}

TEST(Flatten, ChordsKeepWithinTheTolerance) {
    const Piece pieces[] = {arcPiece({0, 0}, {40, 10}, 0.7), arcPiece({5, 5}, {-3, 9}, -1.0),
                            cubicPiece({0, 0}, {10, 15}, {20, -15}, {30, 0})};
    for (const Piece& piece : pieces) {
        for (const double tolerance : {0.5, 0.05, 0.01}) {
            const std::vector<Point> points = flattened(piece, tolerance);
            EXPECT_EQ(points.front(), piece.from);
            EXPECT_EQ(points.back(), piece.to);
            EXPECT_LE(deviation(piece, points), tolerance + 1e-3);
            EXPECT_GT(points.size(), 2U);
        }
    }
}

TEST(Flatten, CornersOfCurvesLieOnThem) {
    const Piece arc = arcPiece({0, 0}, {40, 10}, -0.9);
    for (const Point point : flattened(arc, 0.02))
        EXPECT_LT(distanceTo(arc, point), 1e-9);
}

TEST(Flatten, LinesStayWhole) {
    EXPECT_EQ(flattened(linePiece({1, 2}, {300, 4}), 0.01).size(), 2U);
}

TEST(Flatten, CountIsKnownBefore) {
    const Piece pieces[] = {linePiece({1, 2}, {300, 4}), arcPiece({0, 0}, {40, 10}, 0.7),
                            arcPiece({5, 5}, {-3, 9}, -1.0), arcPiece({0, 0}, {3, 0}, 0.001),
                            cubicPiece({0, 0}, {10, 15}, {20, -15}, {30, 0})};
    for (const Piece& piece : pieces) {
        for (const double tolerance : {0.5, 0.05, 0.01})
            EXPECT_EQ(flattenedCount(piece, tolerance) + 1, flattened(piece, tolerance).size());
    }
}

} // namespace
