#include "outlines.h"

#include <utility>

namespace ovtrace {
namespace {

/// Writes pieces with y turned upward. A bulge belongs to the vertex where its arc starts, so a
/// vertex is written when it is known what follows it.
class RingWriter {
public:
    RingWriter(double height, Point start) : height(height), at(start) {
    }

    void append(const Piece& piece, bool reversed) {
        const Point to = reversed ? piece.from : piece.to;
        if (piece.kind == PieceKind::Cubic) {
            appendCubic(reversed ? piece.control2 : piece.control1,
                        reversed ? piece.control1 : piece.control2, to);
            return;
        }
        double bulge = 0.0;
        if (piece.kind == PieceKind::Arc)
            // Turning the picture's y changes the sense of turning, and so does walking back.
            bulge = reversed ? piece.bulge : -piece.bulge;
        writeVertex(bulge);
        at = to;
        open = true;
    }
    OvPolyline finish() {
        if (open)
            writeVertex(0.0);
        return std::move(polyline);
    }

private:
    OvVector drawingPoint(Point point) const {
        return {point.x, height - point.y, 0.0, true};
    }
    void writeVertex(double bulge) {
        if (open || bulge != 0.0 || isEmpty)
            append(drawingPoint(at), bulge);
    }
    void appendCubic(Point control1, Point control2, Point to) {
        if (open || isEmpty)
            append(drawingPoint(at), 0.0);
        open = false;
        OvSpline spline;
        spline.setDegree(3);
        spline.appendControlPoint(drawingPoint(at));
        spline.appendControlPoint(drawingPoint(control1));
        spline.appendControlPoint(drawingPoint(control2));
        spline.appendControlPoint(drawingPoint(to));
        polyline.appendShape(spline, false);
        at = to;
    }
    void append(const OvVector& vertex, double bulge) {
        polyline.appendVertex(vertex, bulge, 0.0, 0.0);
        isEmpty = false;
    }

    double height;
    Point at;
    bool open = false;   ///< the vertex at `at` has not been written
    bool isEmpty = true; ///< nothing has been written
    OvPolyline polyline;
};

} // namespace

OvPolyline ringPolyline(const RegionMap& map, const MapRing& ring) {
    const auto steps = map.stepsOf(ring);
    const auto first = map.piecesOf(map.boundary(steps.front().boundary));
    RingWriter writer(map.height, steps.front().reversed ? first.back().to : first.front().from);
    for (const RingStep step : steps) {
        const auto pieces = map.piecesOf(map.boundary(step.boundary));
        for (std::size_t i = 0; i < pieces.size(); ++i)
            writer.append(pieces[step.reversed ? pieces.size() - 1 - i : i], step.reversed);
    }
    return writer.finish();
}

} // namespace ovtrace
