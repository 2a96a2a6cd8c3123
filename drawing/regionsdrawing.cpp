#include "regionsdrawing.h"

#include "geometry/vectors.h"

#include <algorithm>
#include <cmath>

namespace {

/// Two arcs are of one circle when their centres and radii agree within this, in pixels: far below
/// what any file keeps.
constexpr double SameCircle = 1e-6;

QPointF toPoint(ovtrace::Point point, int height) {
    return {point.x, height - point.y};
}

PathPiece toPiece(const ovtrace::Piece& piece, int height) {
    const QPointF from = toPoint(piece.from, height);
    const QPointF to = toPoint(piece.to, height);
    switch (piece.kind) {
    case ovtrace::PieceKind::Line:
        return linePiece(from, to);
    case ovtrace::PieceKind::Arc:
        // The map's y axis points down, which turns the sense of arcs round.
        return arcPiece(from, to, -piece.bulge);
    case ovtrace::PieceKind::Cubic:
        return cubicPiece(from, toPoint(piece.control1, height), toPoint(piece.control2, height),
                          to);
    }
    return linePiece(from, to);
}

/// The circle that a closed boundary goes round once, if it does.
std::optional<PathPiece> wholeCircle(const std::vector<PathPiece>& pieces) {
    double turns = 0.0;
    const PathPiece& first = pieces.front();
    if (first.kind != PieceKind::Arc || first.bulge == 0.0)
        return std::nullopt;
    const ArcCircle circle = arcCircle(first.from, first.to, first.bulge);
    for (const PathPiece& piece : pieces) {
        if (piece.kind != PieceKind::Arc || piece.bulge * first.bulge <= 0.0)
            return std::nullopt;
        const ArcCircle own = arcCircle(piece.from, piece.to, piece.bulge);
        if (length(own.centre - circle.centre) > SameCircle ||
            std::abs(own.radius - circle.radius) > SameCircle)
            return std::nullopt;
        turns += 2.0 * std::atan(std::abs(piece.bulge)) / std::acos(-1.0);
    }
    if (std::abs(turns - 1.0) > SameCircle)
        return std::nullopt;
    return circlePiece(circle.centre, circle.radius, first.bulge > 0.0);
}

void appendBoundary(const ovtrace::RegionMap& map, const ovtrace::MapBoundary& boundary,
                    PathList& paths) {
    std::vector<PathPiece> pieces;
    for (const ovtrace::Piece& piece : map.piecesOf(boundary))
        pieces.push_back(toPiece(piece, map.height));
    const auto circle = boundary.isClosed() ? wholeCircle(pieces) : std::nullopt;
    if (circle) {
        paths.appendPath(*circle);
        return;
    }
    paths.begin(pieces.front().from);
    for (const PathPiece& piece : pieces)
        paths.append(piece);
}

} // namespace

void appendRegions(const ovtrace::RegionMap& map, Drawing& drawing) {
    for (const QRgb color : map.palette)
        drawing.palette.append(QColor::fromRgba(color));
    for (const ovtrace::MapBoundary& boundary : map.boundaries)
        appendBoundary(map, boundary, drawing.paths);
    for (const ovtrace::RingStep& step : map.steps)
        drawing.uses.append(
            {static_cast<qsizetype>(ovtrace::indexOf(step.boundary)), step.reversed});
    for (const ovtrace::MapRing& ring : map.rings)
        drawing.rings.append({ring.firstStep, ring.stepCount});
    for (const ovtrace::MapRegion& region : map.regions)
        drawing.shapes.append({ShapeKind::Region, static_cast<int>(region.color), region.firstRing,
                               region.ringCount, static_cast<qsizetype>(region.enclosing)});
    for (const ovtrace::Point& junction : map.junctions)
        drawing.nodes.append(toPoint(junction, map.height));
}
