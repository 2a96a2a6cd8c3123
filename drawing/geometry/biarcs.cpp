#include "biarcs.h"

#include "vectors.h"

#include <array>
#include <cmath>

namespace {

/// The shares of the tolerance that arcs and the lines in place of flat ones may use.
constexpr double ArcShare = 0.7;
constexpr double LineShare = 0.2;
constexpr double CubicShare = 0.1; ///< and quadratic curves in place of cubic ones

constexpr int Samples = 16;        ///< of a curve, to compare it with its arcs
constexpr int MostParts = 1000;    ///< of a cubic curve
constexpr int DeepestHalving = 20; ///< parts of a millionth of a curve: far below any tolerance

/// The bulge of the arc over `chord` that starts along `tangent`.
double bulgeAlong(QPointF chord, QPointF tangent) {
    // The arc's angle is twice that between tangent and chord, and the bulge the tangent of a
    // quarter of it: of half the angle between the two, sin / (1 + cos).
    return cross(tangent, chord) / (length(tangent) * length(chord) + dot(tangent, chord));
}

double sagitta(QPointF start, QPointF end, double bulge) {
    return std::abs(bulge) * length(end - start) / 2.0;
}

struct Arc {
    QPointF start;
    QPointF end;
    double bulge = 0.0;

    /// How far a point beside the arc is from it.
    double distance(QPointF point) const {
        if (bulge == 0.0)
            return std::abs(cross(end - start, point - start)) / length(end - start);
        const ArcCircle circle = arcCircle(start, end, bulge);
        return std::abs(length(point - circle.centre) - circle.radius);
    }
};

class CurveFitter {
public:
    CurveFitter(double tolerance, std::vector<BulgeVertex>& vertices)
        : tolerance(tolerance), vertices(vertices) {
    }

    /// Appends the arcs of a piece, each by its start and bulge.
    void add(const PathPiece& piece) {
        switch (piece.kind) {
        case PieceKind::Line:
        case PieceKind::Arc:
            if (piece.from != piece.to)
                vertices.push_back({piece.from, piece.bulge});
            return;
        case PieceKind::Quadratic:
            add(piece.from, piece.control, piece.to);
            return;
        case PieceKind::Cubic:
            addCubic(piece);
            return;
        case PieceKind::Circle:
            vertices.push_back({piece.from, piece.bulge});
            vertices.push_back({2.0 * piece.control - piece.from, piece.bulge});
            return;
        case PieceKind::Ellipse:
            for (const PathPiece& quarter : asCubics(piece))
                addCubic(quarter);
            return;
        }
    }

private:
    /// The arcs of a quadratic curve.
    void add(QPointF start, QPointF control, QPointF end, int depth = 0) {
        if (isFlat(start, control, end)) {
            vertices.push_back({start, 0.0});
            return;
        }
        const std::array<Arc, 2> arcs = biarc(start, control, end);
        if (depth >= DeepestHalving || fits(arcs, start, control, end)) {
            for (const Arc& arc : arcs)
                add(arc);
            return;
        }
        const QPointF first = (start + control) / 2.0;
        const QPointF second = (control + end) / 2.0;
        const QPointF middle = (first + second) / 2.0;
        add(start, first, middle, depth + 1);
        add(middle, second, end, depth + 1);
    }

    /// A cubic curve by quadratic ones over equal parts of its parameter. The farthest that one is
    /// off is the third difference times the root of 3 / 36, less by the cube of their number.
    void addCubic(const PathPiece& cubic) {
        constexpr double RootOfThree = 1.7320508075688772;
        const QPointF third = cubic.to - 3.0 * cubic.control2 + 3.0 * cubic.control - cubic.from;
        const double whole = length(third) * RootOfThree / 36.0;
        int parts = 1;
        while (parts < MostParts && whole > CubicShare * tolerance * parts * parts * parts)
            ++parts;
        QPointF from = cubic.from;
        for (int i = 1; i <= parts; ++i) {
            const double t = static_cast<double>(i) / parts;
            const double before = static_cast<double>(2 * i - 1) / (2 * parts);
            const QPointF to = i == parts ? cubic.to : cubicPoint(cubic, t);
            // The quadratic curve that meets the cubic one in the middle of the part, too.
            add(from, 2.0 * cubicPoint(cubic, before) - (from + to) / 2.0, to);
            from = to;
        }
    }

    /// Whether the chord can stand for the curve, which lies inside the triangle of its points.
    bool isFlat(QPointF start, QPointF control, QPointF end) const {
        const QPointF chord = end - start;
        const double size = length(chord);
        const double bend = length(start - 2.0 * control + end) / 4.0;
        if (size == 0.0 || bend <= LineShare * tolerance)
            return bend <= LineShare * tolerance;
        const double along = dot(control - start, chord) / (size * size);
        return along >= 0.0 && along <= 1.0 &&
               std::abs(cross(chord, control - start)) / size / 2.0 <= LineShare * tolerance;
    }

    static std::array<Arc, 2> biarc(QPointF start, QPointF control, QPointF end) {
        const double toEnd = length(end - control);
        const double whole = length(end - start);
        const double fromStart = length(control - start);
        const QPointF joint =
            (start * toEnd + control * whole + end * fromStart) / (toEnd + whole + fromStart);
        // The second arc is looked at from its end, backwards.
        return {Arc{start, joint, bulgeAlong(joint - start, control - start)},
                Arc{joint, end, -bulgeAlong(joint - end, control - end)}};
    }

    bool fits(const std::array<Arc, 2>& arcs, QPointF start, QPointF control, QPointF end) const {
        // Points before the joint's normal belong to the first arc.
        const QPointF joint = arcs[0].end;
        const QPointF across = end - start;
        for (int i = 1; i < Samples; ++i) {
            const QPointF point = curvePoint(start, control, end, static_cast<double>(i) / Samples);
            const Arc& arc = dot(point - joint, across) < 0.0 ? arcs[0] : arcs[1];
            if (!(arc.distance(point) <= ArcShare * tolerance))
                return false;
        }
        // A half turn or more would lie on the other side of its chord.
        return std::abs(arcs[0].bulge) < 1.0 && std::abs(arcs[1].bulge) < 1.0;
    }

    void add(const Arc& arc) {
        if (arc.start == arc.end)
            return;
        const bool isLine = sagitta(arc.start, arc.end, arc.bulge) <= LineShare * tolerance;
        vertices.push_back({arc.start, isLine ? 0.0 : arc.bulge});
    }

    double tolerance;
    std::vector<BulgeVertex>& vertices;
};

} // namespace

std::vector<BulgeVertex> toBulges(std::span<const PathPiece> pieces, double tolerance) {
    std::vector<BulgeVertex> vertices;
    if (pieces.empty())
        return vertices;
    vertices.reserve(pieces.size());
    CurveFitter fitter(tolerance, vertices);
    for (const PathPiece& piece : pieces)
        fitter.add(piece);
    // A ring ends where it starts; if not, the last point is a corner of its own.
    if (pieces.back().to != pieces.front().from)
        vertices.push_back({pieces.back().to, 0.0});
    return vertices;
}
