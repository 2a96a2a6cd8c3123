#include "support/randominput.h"

#include <drawing/geometry/pathpiece.h>

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

namespace {

double length(QPointF vector) {
    return std::hypot(vector.x(), vector.y());
}

QPointF randomPoint(RandomInput& input) {
    return {input.number(0, 400) / 4.0, input.number(0, 400) / 4.0};
}

/// A point of the piece at 0 <= t <= 1, by sine and cosine where it is round.
QPointF pointOf(const PathPiece& piece, double t) {
    switch (piece.kind) {
    case PieceKind::Line:
        return piece.from + (piece.to - piece.from) * t;
    case PieceKind::Arc: {
        const ArcCircle circle = arcCircle(piece.from, piece.to, piece.bulge);
        const QPointF start = piece.from - circle.centre;
        const double angle = std::atan2(start.y(), start.x()) + t * 4.0 * std::atan(piece.bulge);
        return circle.centre + circle.radius * QPointF(std::cos(angle), std::sin(angle));
    }
    case PieceKind::Quadratic:
        return curvePoint(piece.from, piece.control, piece.to, t);
    case PieceKind::Cubic:
        return cubicPoint(piece, t);
    case PieceKind::Circle:
    case PieceKind::Ellipse: {
        const bool isCircle = piece.kind == PieceKind::Circle;
        const QPointF axis = isCircle ? QPointF(piece.radius, 0.0) : piece.control2;
        const QPointF across = QPointF(-axis.y(), axis.x()) * (piece.radius / length(axis));
        const double angle = 2.0 * std::numbers::pi * t * piece.bulge;
        return piece.control + axis * std::cos(angle) + across * std::sin(angle);
    }
    }
    return {};
}

std::vector<PathPiece> onePieceOfEachKind(RandomInput& input) {
    const QPointF from = randomPoint(input);
    const QPointF to = from + QPointF(input.number(1, 50), input.number(-50, 50));
    const bool counterClockwise = input.oneIn(2);
    return {linePiece(from, to),
            arcPiece(from, to, input.number(-24, 24) / 8.0 + 0.01),
            quadraticPiece(from, randomPoint(input), to),
            cubicPiece(from, randomPoint(input), randomPoint(input), to),
            circlePiece(from, input.number(1, 80) / 3.0, counterClockwise),
            ellipsePiece(from, to - from, input.number(1, 80) / 3.0, counterClockwise)};
}

double distanceToChain(QPointF point, const std::vector<QPointF>& chain) {
    double least = 1e300;
    for (std::size_t i = 1; i < chain.size(); ++i) {
        const QPointF a = chain[i - 1];
        const QPointF d = chain[i] - a;
        const double square = d.x() * d.x() + d.y() * d.y();
        const double along = QPointF::dotProduct(point - a, d);
        const double t = square == 0.0 ? 0.0 : std::clamp(along / square, 0.0, 1.0);
        least = std::min(least, length(point - a - d * t));
    }
    return least;
}

double areaOf(const std::vector<QPointF>& ring) {
    double twice = 0.0;
    for (std::size_t i = 0; i < ring.size(); ++i) {
        const QPointF& a = ring[i];
        const QPointF& b = ring[(i + 1) % ring.size()];
        twice += a.x() * b.y() - a.y() * b.x();
    }
    return twice / 2.0;
}

} // namespace

TEST(PathPiece, FlatteningStaysWithinTheTolerance) {
    RandomInput input(20271);
    for (int round = 0; round < 200; ++round) {
        for (const PathPiece& piece : onePieceOfEachKind(input)) {
            for (const double tolerance : {1.0, 0.05}) {
                const auto points = flattened(std::span(&piece, 1), tolerance);
                ASSERT_EQ(points.front(), piece.from);
                ASSERT_EQ(points.back(), piece.to);
                for (int i = 0; i <= 40; ++i)
                    ASSERT_LE(distanceToChain(pointOf(piece, i / 40.0), points), tolerance + 1e-9)
                        << round << ", " << static_cast<int>(piece.kind);
            }
        }
    }
}

TEST(PathPiece, BoxAndAreaAreThoseOfFineStraightPieces) {
    RandomInput input(20272);
    for (int round = 0; round < 200; ++round) {
        for (const PathPiece& piece : onePieceOfEachKind(input)) {
            const auto points = flattenedRing(std::span(&piece, 1), 1e-5);
            QRectF box(points.front(), points.front());
            double around = 0.0;
            for (std::size_t i = 1; i < points.size(); ++i) {
                extend(box, points[i]);
                around += length(points[i] - points[i - 1]);
            }
            const QRectF exact = boundingBox(std::span(&piece, 1));
            EXPECT_NEAR(exact.left(), box.left(), 1e-4) << static_cast<int>(piece.kind);
            EXPECT_NEAR(exact.right(), box.right(), 1e-4);
            EXPECT_NEAR(exact.top(), box.top(), 1e-4);
            EXPECT_NEAR(exact.bottom(), box.bottom(), 1e-4);
            EXPECT_NEAR(signedArea(std::span(&piece, 1)), areaOf(points), 1e-5 * around + 1e-9)
                << static_cast<int>(piece.kind);
        }
    }
}

TEST(PathPiece, BoxAndAreaOfCurvesAreExact) {
    const std::vector arch{quadraticPiece({0, 0}, {5, 8}, {10, 0}), linePiece({10, 0}, {0, 0})};
    const QRectF box = boundingBox(arch);
    EXPECT_EQ(box.topLeft(), QPointF(0, 0));
    EXPECT_EQ(box.bottomRight(), QPointF(10, 4)) << "half of the control point's height";
    EXPECT_DOUBLE_EQ(signedArea(arch), -80.0 / 3.0) << "clockwise, two thirds of the triangle";
}

TEST(PathPiece, ReversedRunsThroughTheSamePlaces) {
    RandomInput input(20273);
    for (int round = 0; round < 100; ++round) {
        for (const PathPiece& piece : onePieceOfEachKind(input)) {
            const PathPiece back = reversed(piece);
            for (int i = 0; i <= 8; ++i)
                EXPECT_LT(length(pointOf(piece, i / 8.0) - pointOf(back, 1.0 - i / 8.0)), 1e-9);
            EXPECT_DOUBLE_EQ(signedArea(std::span(&back, 1)), -signedArea(std::span(&piece, 1)));
        }
    }
}

TEST(PathPiece, TransformedIsEveryPointTransformed) {
    RandomInput input(20274);
    const QPointF offset(3.0, 50.0);
    for (int round = 0; round < 100; ++round) {
        for (const PathPiece& piece : onePieceOfEachKind(input)) {
            for (const bool flipped : {false, true}) {
                const PathPiece mapped = transformed(piece, 0.25, flipped, offset);
                for (int i = 0; i <= 8; ++i) {
                    const QPointF point = pointOf(piece, i / 8.0);
                    const QPointF expected(point.x() / 4.0, point.y() / (flipped ? -4.0 : 4.0));
                    const QPointF own = pointOf(mapped, i / 8.0);
                    // A circle begins at its rightmost point, flipped or not.
                    EXPECT_LT(length(own - expected - offset), 1e-9)
                        << static_cast<int>(piece.kind) << flipped;
                }
            }
        }
    }
}

TEST(PathPiece, RoundOnesAsCubicCurvesAreRound) {
    RandomInput input(20275);
    for (int round = 0; round < 100; ++round) {
        const auto pieces = onePieceOfEachKind(input);
        const PathPiece& arc = pieces[1];
        const ArcCircle circle = arcCircle(arc.from, arc.to, arc.bulge);
        QPointF from = arc.from;
        for (const PathPiece& cubic : arcAsCubics(arc)) {
            EXPECT_EQ(cubic.from, from);
            from = cubic.to;
            for (int i = 0; i <= 8; ++i)
                EXPECT_NEAR(length(cubicPoint(cubic, i / 8.0) - circle.centre) / circle.radius, 1.0,
                            5e-6);
        }
        EXPECT_EQ(from, arc.to);
        const PathPiece& whole = pieces[4];
        for (const PathPiece& cubic : asCubics(whole)) {
            for (int i = 0; i <= 8; ++i)
                EXPECT_NEAR(length(cubicPoint(cubic, i / 8.0) - whole.control) / whole.radius, 1.0,
                            3e-4);
        }
    }
}
