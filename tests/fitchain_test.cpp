#include "shapes/fitchain.h"
#include "support/outlinesamples.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>

using namespace ovtrace;

namespace {

constexpr double sigma = 0.01;

/// Whether each piece starts where the one before ends, to the last digit.
void expectJoined(const std::vector<Piece>& pieces, bool closed) {
    for (std::size_t k = 1; k < pieces.size(); ++k)
        EXPECT_EQ(pieces[k - 1].to, pieces[k].from) << "piece " << k;
    if (closed && !pieces.empty()) {
        EXPECT_EQ(pieces.back().to, pieces.front().from);
    }
    for (const Piece& piece : pieces) {
        EXPECT_TRUE(isFinite(piece.from) && isFinite(piece.to) && std::isfinite(piece.bulge));
        EXPECT_TRUE(isFinite(piece.control1) && isFinite(piece.control2));
        EXPECT_NE(piece.from, piece.to);
    }
}

double nearestCorner(const std::vector<Piece>& pieces, Point corner) {
    double least = std::numeric_limits<double>::infinity();
    for (const Piece& piece : pieces)
        least = std::min(least, distance(piece.from, corner));
    return least;
}

/// The largest distance of the outline from the pieces.
double farthest(const std::vector<Piece>& pieces, const Outline& outline) {
    double greatest = 0.0;
    for (const Point& point : outline) {
        double least = std::numeric_limits<double>::infinity();
        for (const Piece& piece : pieces)
            least = std::min(least, distanceTo(piece, point));
        greatest = std::max(greatest, least);
    }
    return greatest;
}

std::size_t countOf(const std::vector<Piece>& pieces, PieceKind kind) {
    return static_cast<std::size_t>(std::count_if(
        pieces.begin(), pieces.end(), [&](const Piece& piece) { return piece.kind == kind; }));
}

std::string described(const std::vector<Piece>& pieces) {
    std::string text;
    for (const Piece& p : pieces)
        text += (p.kind == PieceKind::Line  ? "line "
                 : p.kind == PieceKind::Arc ? "arc "
                                            : "cubic ") +
                std::to_string(p.from.x) + " " + std::to_string(p.from.y) + " -> " +
                std::to_string(p.to.x) + " " + std::to_string(p.to.y) + " bulge " +
                std::to_string(p.bulge) + "\n";
    return text;
}

} // namespace

TEST(FitChain, CircleIsTwoArcs) {
    for (const double radius : {1.5, 2.5, 4.0, 8.0, 20.0, 75.0, 300.0}) {
        const Point centre{310.37, 305.81};
        const auto samples = coverageSamples(circleOutline(centre, radius), 0.003, sigma);
        const auto pieces = fitChain(samples, true);
        expectJoined(pieces, true);
        ASSERT_EQ(pieces.size(), 2u) << radius;
        ASSERT_EQ(pieces[0].kind, PieceKind::Arc);
        const Circle circle = circleOf(pieces[0]);
        EXPECT_LT(std::abs(circle.radius - radius), radius < 3.0 ? 0.06 : 0.015) << radius;
        EXPECT_LT(distance(circle.centre, centre), 0.01) << radius;
    }
}

TEST(FitChain, RectangleHasFourLinesAndSharpCorners) {
    for (const double degrees : {0.0, 1.0, 7.0, 20.0, 33.0, 45.0}) {
        const Outline outline = roundedRectangle({60.3, 50.7}, {31.0, 17.0}, 0.0, degrees);
        const auto pieces = fitChain(coverageSamples(outline, 0.003, sigma), true);
        expectJoined(pieces, true);
        EXPECT_EQ(pieces.size(), 4u) << degrees << "\n" << described(pieces);
        EXPECT_LT(farthest(pieces, outline), 0.03) << degrees;
    }
}

TEST(FitChain, RoundedRectangleHasTangentArcs) {
    for (const double degrees : {0.0, 7.0, 30.0})
        for (const double radius : {3.0, 6.0, 12.0}) {
            const Outline outline = roundedRectangle({60.3, 50.7}, {31.0, 17.0}, radius, degrees);
            const auto pieces = fitChain(coverageSamples(outline, 0.003, sigma), true);
            expectJoined(pieces, true);
            EXPECT_EQ(countOf(pieces, PieceKind::Line), 4u) << degrees << " " << radius << "\n"
                                                            << described(pieces);
            EXPECT_EQ(countOf(pieces, PieceKind::Arc), 4u);
            EXPECT_LT(farthest(pieces, outline), 0.05);
            for (std::size_t k = 0; k < pieces.size(); ++k) {
                const Point u = endTangent(pieces[k]);
                const Point v = startTangent(pieces[(k + 1) % pieces.size()]);
                EXPECT_LT(std::abs(cross(u, v)), 1e-6) << degrees << " " << radius;
            }
        }
}

TEST(FitChain, StarHasSharpTips) {
    for (const double degrees : {0.0, 11.0, 25.0})
        for (const int tips : {5, 7}) {
            const auto corners = starCorners({80.2, 80.6}, 60.0, 25.0, tips, degrees);
            const auto pieces =
                fitChain(coverageSamples(polygonOutline(corners), 0.003, sigma), true);
            expectJoined(pieces, true);
            EXPECT_EQ(pieces.size(), corners.size()) << described(pieces);
            for (const Point& corner : corners)
                EXPECT_LT(nearestCorner(pieces, corner), 0.05) << degrees << " " << tips;
        }
}

TEST(FitChain, ThinRectangleHasCaps) {
    for (const double width : {1.0, 1.5, 2.0, 3.0, 4.0})
        for (const double degrees : {0.0, 10.0, 40.0}) {
            const Outline outline =
                roundedRectangle({60.3, 50.7}, {31.0, width / 2.0}, 0.0, degrees);
            const auto pieces = fitChain(coverageSamples(outline, 0.003, sigma), true);
            expectJoined(pieces, true);
            EXPECT_LE(pieces.size(), 6u) << width << " " << degrees << "\n" << described(pieces);
            EXPECT_LT(farthest(pieces, outline), 1.0) << width << " " << degrees << "\n"
                                                      << described(pieces);
        }
}

TEST(FitChain, DegenerateChains) {
    const FitOptions options;
    EXPECT_TRUE(fitChain({}, true).empty());
    const double huge = 1e150;
    const double none = std::numeric_limits<double>::quiet_NaN();
    const std::vector<std::vector<Point>> chains{
        {{1, 1}},
        {{1, 1}, {1, 1}},
        {{1, 1}, {2, 1}},
        {{1, 1}, {2, 1}, {2, 2}},
        {{1, 1}, {1, 1}, {1, 1}, {1, 1}, {1, 1}, {1, 1}, {1, 1}, {1, 1}},
        {{0, 0}, {1, 0}, {2, 0}, {3, 0}, {2, 0}, {1, 0}},
        {{huge, 0}, {0, huge}, {-huge, 0}, {0, -huge}, {huge, huge}, {1, 1}},
        {{1e9, 1e9}, {1e9 + 1, 1e9}, {1e9 + 2, 1e9}, {1e9 + 2, 1e9 + 1}, {1e9 + 2, 1e9 + 2}},
        {{none, 0}, {0, 0}, {1, none}, {1, 1}, {5, 5}}};
    for (const auto& chain : chains)
        for (const double given : {0.0, 0.01, 0.3})
            for (const bool closed : {false, true}) {
                std::vector<Sample> samples;
                for (const Point& point : chain)
                    samples.push_back({point, given, false});
                expectJoined(fitChain(samples, closed, options), closed);
            }
}

TEST(FitChain, EndsOfAnOpenChainAreThoseGiven) {
    std::vector<Sample> samples;
    for (int k = 0; k < 40; ++k)
        samples.push_back({{k + 0.5, 10.0 + 0.25 * k}, sigma, false});
    const Point start{-0.3, 9.8};
    const Point end{40.7, 20.2};
    const auto pieces = fitChain(samples, false, {}, start, end);
    expectJoined(pieces, false);
    ASSERT_EQ(pieces.size(), 1u);
    EXPECT_EQ(pieces.front().from, start);
    EXPECT_EQ(pieces.back().to, end);
}
