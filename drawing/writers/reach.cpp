#include "reach.h"

#include "../geometry/vectors.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double ClearShare = 0.7;  ///< of the free distance that is used
constexpr double SampleStep = 1.0;  ///< pixels between the places where that is looked up
constexpr double InnerShare = 0.8;  ///< of the radius of an arc that turns around what is reached
constexpr double ShortShare = 0.45; ///< of a piece between two corners that close in on each other

QPointF unit(QPointF vector) {
    const double size = length(vector);
    return size > 0.0 ? vector / size : vector;
}

QPointF rightOf(QPointF direction) {
    return {direction.y(), -direction.x()};
}

/// The chord turned by half of an arc's angle: clockwise gives the tangent at its start.
QPointF arcTangent(const PathPiece& arc, double sense) {
    const QPointF chord = arc.to - arc.from;
    const QPointF left(-chord.y(), chord.x());
    return unit(chord * (1.0 - arc.bulge * arc.bulge) + left * (sense * 2.0 * arc.bulge));
}

QPointF startDirection(const PathPiece& piece) {
    if (piece.kind == PieceKind::Arc)
        return arcTangent(piece, -1.0);
    const QPointF to = piece.kind == PieceKind::Line ? piece.to : piece.control;
    return unit(to != piece.from ? to - piece.from : piece.to - piece.from);
}

QPointF endDirection(const PathPiece& piece) {
    if (piece.kind == PieceKind::Arc)
        return arcTangent(piece, 1.0);
    const QPointF from = piece.kind == PieceKind::Line        ? piece.from
                         : piece.kind == PieceKind::Quadratic ? piece.control
                                                              : piece.control2;
    return unit(from != piece.to ? piece.to - from : piece.to - piece.from);
}

double chordOf(const PathPiece& piece) {
    return length(piece.to - piece.from);
}

/// The part of an open piece from 0 < t < 1 on, where it passes `at`.
PathPiece tail(const PathPiece& piece, double t, QPointF at) {
    switch (piece.kind) {
    case PieceKind::Arc:
        return arcPiece(at, piece.to,
                        piece.bulge * (1.0 - t) / (1.0 + piece.bulge * piece.bulge * t));
    case PieceKind::Cubic: {
        const QPointF second = piece.control + (piece.control2 - piece.control) * t;
        const QPointF third = piece.control2 + (piece.to - piece.control2) * t;
        return cubicPiece(at, second + (third - second) * t, third, piece.to);
    }
    default:
        return linePiece(at, piece.to);
    }
}

QPointF pointOf(const PathPiece& piece, double t) {
    const QPointF chord = piece.to - piece.from;
    if (piece.kind == PieceKind::Cubic)
        return cubicPoint(piece, t);
    if (piece.kind == PieceKind::Quadratic)
        return curvePoint(piece.from, piece.control, piece.to, t);
    if (piece.kind == PieceKind::Line || piece.bulge == 0.0)
        return piece.from + chord * t;
    // The parameter divides the tangent of a quarter of the angle.
    const ArcCircle circle = arcCircle(piece.from, piece.to, piece.bulge);
    const double quarter = piece.bulge * t;
    const double square = quarter * quarter;
    const double cosine = (1.0 - square) / (1.0 + square); // of half the angle
    const double sine = 2.0 * quarter / (1.0 + square);
    const QPointF radius = piece.from - circle.centre;
    const QPointF left(-radius.y(), radius.x());
    return circle.centre + radius * (cosine * cosine - sine * sine) + left * (2.0 * sine * cosine);
}

/// A run of pieces that reach, between two places that stay.
class Run {
public:
    Run(std::vector<PathPiece> pieces, bool isClosed,
        const std::function<double(QPointF)>& clearance)
        : pieces(std::move(pieces)), isClosed(isClosed), clearance(clearance) {
    }

    std::vector<PathPiece> moved() {
        splitEnds();
        findReaches();
        placeNodes();
        std::vector<PathPiece> result;
        const std::size_t count = pieces.size();
        for (std::size_t i = 0; i < count; ++i)
            result.push_back(between(pieces[i], nodes[i], nodes[i + 1]));
        return result;
    }

private:
    /// Makes places near the ends of an open run from which on it has its full reach.
    void splitEnds() {
        if (isClosed)
            return;
        splitFront(pieces);
        std::reverse(pieces.begin(), pieces.end());
        std::transform(pieces.begin(), pieces.end(), pieces.begin(), reversed);
        splitFront(pieces);
        std::reverse(pieces.begin(), pieces.end());
        std::transform(pieces.begin(), pieces.end(), pieces.begin(), reversed);
    }

    static void splitFront(std::vector<PathPiece>& run) {
        const PathPiece front = run.front();
        const double chord = chordOf(front);
        if (front.kind == PieceKind::Quadratic || chord == 0.0)
            return;
        const double t = std::min(0.45, FarthestReach / chord);
        const QPointF at = pointOf(front, t);
        PathPiece head = reversed(tail(reversed(front), 1.0 - t, at));
        head.from = front.from;
        run.front() = tail(front, t, at);
        run.insert(run.begin(), head);
    }

    /// How far each piece may go: by what is around it and by its own form.
    void findReaches() {
        for (std::size_t i = 0; i < pieces.size(); ++i) {
            const PathPiece& piece = pieces[i];
            double reach = FarthestReach;
            // The places at the ends of an open run do not move.
            const bool isFirst = !isClosed && i == 0;
            const bool isLast = !isClosed && i + 1 == pieces.size();
            const int steps = std::max(2, static_cast<int>(std::ceil(chordOf(piece) / SampleStep)));
            for (int k = isFirst ? steps : 0; k <= (isLast ? 0 : steps); ++k)
                reach = std::min(
                    reach, ClearShare * clearance(pointOf(piece, static_cast<double>(k) / steps)));
            // An arc that turns to the right has what is reached inside.
            if (piece.kind == PieceKind::Arc && piece.bulge < 0.0)
                reach = std::min(reach,
                                 InnerShare * arcCircle(piece.from, piece.to, piece.bulge).radius);
            if (cross(endDirection(before(i)), startDirection(piece)) < 0.0 ||
                cross(endDirection(piece), startDirection(after(i))) < 0.0)
                reach = std::min(reach, ShortShare * chordOf(piece));
            reaches.push_back(reach);
        }
    }

    const PathPiece& before(std::size_t i) const {
        return pieces[i > 0 ? i - 1 : isClosed ? pieces.size() - 1 : 0];
    }
    const PathPiece& after(std::size_t i) const {
        return pieces[i + 1 < pieces.size() ? i + 1 : isClosed ? 0 : i];
    }

    void placeNodes() {
        const std::size_t count = pieces.size();
        for (std::size_t i = 0; i <= count; ++i) {
            const bool isEnd = i == 0 || i == count;
            if (isEnd && !isClosed) {
                nodes.push_back(i == 0 ? pieces.front().from : pieces.back().to);
                continue;
            }
            const std::size_t next = i % count;
            const std::size_t last = (i + count - 1) % count;
            nodes.push_back(
                movedNode(pieces[last], pieces[next], std::min(reaches[last], reaches[next])));
        }
    }

    static QPointF movedNode(const PathPiece& last, const PathPiece& next, double reach) {
        const QPointF normals = rightOf(endDirection(last)) + rightOf(startDirection(next));
        const double square = dot(normals, normals);
        // Twice the unit vector over the square is the mitre; a sharp one is cut short.
        if (square < 1.0)
            return next.from + unit(normals) * reach;
        return next.from + normals * (2.0 * reach / square);
    }

    static PathPiece between(const PathPiece& piece, QPointF from, QPointF to) {
        PathPiece result = piece;
        result.from = from;
        result.to = to;
        result.control = piece.control + (from - piece.from);
        result.control2 = piece.control2 + (to - piece.to);
        if (piece.kind == PieceKind::Quadratic)
            result.control = piece.control + (from - piece.from + to - piece.to) / 2.0;
        return result;
    }

    std::vector<PathPiece> pieces;
    bool isClosed;
    const std::function<double(QPointF)>& clearance;
    std::vector<double> reaches; ///< of the pieces
    std::vector<QPointF> nodes;  ///< where they begin, and the end
};

/// A whole circle stays one.
PathPiece movedCircle(PathPiece circle, const std::function<double(QPointF)>& clearance) {
    double reach = FarthestReach;
    for (const QPointF& point : flattened(std::span(&circle, 1), 0.1))
        reach = std::min(reach, ClearShare * clearance(point));
    if (circle.bulge < 0.0)
        reach = -std::min(reach, InnerShare * circle.radius);
    return circlePiece(circle.control, circle.radius + reach, circle.bulge > 0.0);
}

} // namespace

std::vector<PathPiece> withReach(std::vector<RingPiece> ring,
                                 const std::function<double(QPointF)>& clearance) {
    const auto stays = [](const RingPiece& each) { return !each.reaches; };
    std::vector<PathPiece> result;
    if (ring.size() == 1 && ring.front().piece.kind == PieceKind::Circle && ring.front().reaches)
        return {movedCircle(ring.front().piece, clearance)};
    const auto firstStaying = std::find_if(ring.begin(), ring.end(), stays);
    const bool isClosed = firstStaying == ring.end();
    if (!isClosed)
        std::rotate(ring.begin(), firstStaying, ring.end());
    for (std::size_t i = 0; i < ring.size();) {
        if (!ring[i].reaches) {
            result.push_back(ring[i++].piece);
            continue;
        }
        std::vector<PathPiece> run;
        while (i < ring.size() && ring[i].reaches)
            run.push_back(ring[i++].piece);
        const std::vector<PathPiece> moved = Run(std::move(run), isClosed, clearance).moved();
        result.insert(result.end(), moved.begin(), moved.end());
    }
    return result;
}
