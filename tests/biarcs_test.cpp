#include "support/randominput.h"

#include <drawing/geometry/biarcs.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace {

double distance(QPointF a, QPointF b) {
    return std::hypot(a.x() - b.x(), a.y() - b.y());
}

/// Points along the closed polyline of arcs, close together.
std::vector<QPointF> sampled(const std::vector<BulgeVertex>& vertices, int perPiece) {
    std::vector<QPointF> points;
    for (std::size_t i = 0; i < vertices.size(); ++i) {
        const QPointF start = vertices[i].point;
        const QPointF end = vertices[(i + 1) % vertices.size()].point;
        const double bulge = vertices[i].bulge;
        for (int k = 0; k < perPiece; ++k) {
            const double t = static_cast<double>(k) / perPiece;
            if (bulge == 0.0) {
                points.push_back(start + (end - start) * t);
                continue;
            }
            const ArcCircle circle = arcCircle(start, end, bulge);
            const double from =
                std::atan2(start.y() - circle.centre.y(), start.x() - circle.centre.x());
            const double angle = from + t * 4.0 * std::atan(bulge);
            points.emplace_back(circle.centre.x() + circle.radius * std::cos(angle),
                                circle.centre.y() + circle.radius * std::sin(angle));
        }
    }
    return points;
}

using Outline = std::vector<PathPiece>;

std::vector<QPointF> sampled(const Outline& outline, int perPiece) {
    std::vector<QPointF> points;
    for (const PathPiece& piece : outline) {
        const QPointF control =
            piece.kind == PieceKind::Line ? (piece.from + piece.to) / 2.0 : piece.control;
        for (int k = 0; k < perPiece; ++k)
            points.push_back(
                curvePoint(piece.from, control, piece.to, static_cast<double>(k) / perPiece));
    }
    return points;
}

/// The largest distance from a point of `from` to the closed line through `to`.
double farthest(const std::vector<QPointF>& from, const std::vector<QPointF>& to) {
    double largest = 0.0;
    for (const QPointF& point : from) {
        double least = 1e300;
        for (std::size_t i = 0; i < to.size(); ++i) {
            const QPointF a = to[i];
            const QPointF d = to[(i + 1) % to.size()] - a;
            const double size = d.x() * d.x() + d.y() * d.y();
            const double t =
                size == 0.0
                    ? 0.0
                    : std::clamp(((point.x() - a.x()) * d.x() + (point.y() - a.y()) * d.y()) / size,
                                 0.0, 1.0);
            least = std::min(least, distance(point, a + d * t));
        }
        largest = std::max(largest, least);
    }
    return largest;
}

double bulgeArea(const std::vector<BulgeVertex>& vertices) {
    double area = 0.0;
    for (std::size_t i = 0; i < vertices.size(); ++i) {
        const QPointF a = vertices[i].point;
        const QPointF b = vertices[(i + 1) % vertices.size()].point;
        area += (a.x() * b.y() - a.y() * b.x()) / 2.0;
        if (vertices[i].bulge != 0.0) {
            const double angle = 4.0 * std::atan(vertices[i].bulge);
            const double radius = arcCircle(a, b, vertices[i].bulge).radius;
            area += radius * radius * (angle - std::sin(angle)) / 2.0;
        }
    }
    return area;
}

Outline randomOutline(RandomInput& input) {
    const auto point = [&] {
        return QPointF(input.number(0, 400) / 4.0, input.number(0, 400) / 4.0);
    };
    const QPointF start = point();
    Outline outline;
    QPointF from = start;
    for (int i = input.number(1, 6); i >= 0; --i) {
        const bool isCurve = !input.oneIn(3);
        const QPointF control = point();
        const QPointF to = i == 0 ? start : point();
        outline.push_back(isCurve ? quadraticPiece(from, control, to) : linePiece(from, to));
        from = to;
    }
    return outline;
}

} // namespace

TEST(Biarcs, AreNeverFartherThanTheTolerance) {
    RandomInput input(20268);
    for (int round = 0; round < 60; ++round) {
        const Outline outline = randomOutline(input);
        for (const double tolerance : {1.0, 0.05, 0.002}) {
            const auto vertices = toBulges(outline, tolerance);
            ASSERT_FALSE(vertices.empty());
            const auto arcs = sampled(vertices, 12);
            const auto curve = sampled(outline, 300);
            // The samples themselves are a little beside what they are taken from.
            const double allowed = tolerance + 1e-3;
            ASSERT_LE(farthest(arcs, curve), allowed) << round << ", " << tolerance;
            ASSERT_LE(farthest(curve, sampled(vertices, 40)), allowed)
                << round << ", " << tolerance;
        }
    }
}

TEST(Biarcs, EncloseTheAreaOfTheCurves) {
    RandomInput input(20269);
    for (int round = 0; round < 500; ++round) {
        const Outline outline = randomOutline(input);
        double length = 0.0;
        const auto points = sampled(outline, 50);
        for (std::size_t i = 0; i < points.size(); ++i)
            length += distance(points[i], points[(i + 1) % points.size()]);
        ASSERT_NEAR(bulgeArea(toBulges(outline, 0.01)), signedArea(outline), 0.01 * length + 1e-9);
    }
}

TEST(Biarcs, AQuarterCircleIsAlmostOneArc) {
    const Outline quarter{quadraticPiece({10, 0}, {10, 10}, {0, 10}), linePiece({0, 10}, {0, 0}),
                          linePiece({0, 0}, {10, 0})};
    const auto vertices = toBulges(quarter, 1.0);
    ASSERT_EQ(vertices.size(), 4U) << "two arcs and two lines";
    EXPECT_GT(vertices[0].bulge, 0.0) << "counter-clockwise";
    EXPECT_EQ(vertices[2].bulge, 0.0);
    const ArcCircle circle = arcCircle({1, 0}, {0, 1}, std::tan(std::numbers::pi / 8.0));
    EXPECT_NEAR(circle.centre.x(), 0.0, 1e-12);
    EXPECT_NEAR(circle.centre.y(), 0.0, 1e-12);
    EXPECT_NEAR(circle.radius, 1.0, 1e-12);
}

TEST(Biarcs, NoRadiusRunsAway) {
    const Outline flat{quadraticPiece({0, 0}, {50, 0.01}, {100, 0}), linePiece({100, 0}, {50, 60}),
                       linePiece({50, 60}, {0, 0})};
    for (const BulgeVertex& vertex : toBulges(flat, 0.05))
        EXPECT_EQ(vertex.bulge, 0.0);
    RandomInput input(20270);
    for (int round = 0; round < 500; ++round) {
        const auto vertices = toBulges(randomOutline(input), 0.05);
        for (std::size_t i = 0; i < vertices.size(); ++i) {
            const BulgeVertex& vertex = vertices[i];
            if (vertex.bulge == 0.0)
                continue;
            const QPointF next = vertices[(i + 1) % vertices.size()].point;
            EXPECT_GT(std::abs(vertex.bulge) * distance(vertex.point, next) / 2.0, 0.009);
        }
    }
}

TEST(Biarcs, CurvesThatTurnBackAreFollowed) {
    const Outline back{quadraticPiece({0, 0}, {20, 0}, {10, 0}),
                       quadraticPiece({10, 0}, {10, 5}, {0, 0})};
    const auto vertices = toBulges(back, 0.05);
    EXPECT_LE(farthest(sampled(back, 300), sampled(vertices, 40)), 0.051);
}
