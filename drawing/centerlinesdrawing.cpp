#include "centerlinesdrawing.h"

#include <tracecenterlines.h>

namespace {

QPointF toPoint(const OvCenterlinePoint& point) {
    return {point.x, point.y};
}

void appendPath(const OvCenterlineStroke& stroke, PathList& paths) {
    using Shape = OvCenterlineStroke::Shape;
    switch (stroke.shape) {
    case Shape::Line:
        paths.appendPath(linePiece(toPoint(stroke.start), toPoint(stroke.end)));
        return;
    case Shape::Arc:
        paths.appendPath(arcPiece(toPoint(stroke.start), toPoint(stroke.end), stroke.bulge));
        return;
    case Shape::Circle:
        paths.appendPath(circlePiece(toPoint(stroke.center), stroke.radius));
        return;
    case Shape::Ellipse:
        paths.appendPath(ellipsePiece(toPoint(stroke.center), toPoint(stroke.axis) * stroke.radius,
                                      stroke.minorRadius));
        return;
    case Shape::Polyline:
        paths.begin(toPoint(stroke.points.front()));
        for (qsizetype i = 1; i < stroke.points.size(); ++i)
            paths.lineTo(toPoint(stroke.points[i]));
        return;
    }
}

StrokeKind kindOf(OvCenterlineStroke::Kind kind) {
    switch (kind) {
    case OvCenterlineStroke::Kind::Dashed:
        return StrokeKind::Dashed;
    case OvCenterlineStroke::Kind::Hatch:
        return StrokeKind::Hatch;
    default:
        return StrokeKind::Line;
    }
}

/// The index of the pattern, which is added when it is new.
int patternOf(const QList<double>& dashes, Drawing& drawing) {
    if (dashes.isEmpty())
        return -1;
    const qsizetype known = drawing.dashPatterns.indexOf(dashes);
    if (known >= 0)
        return static_cast<int>(known);
    drawing.dashPatterns.append(dashes);
    return static_cast<int>(drawing.dashPatterns.size()) - 1;
}

void appendArea(const OvCenterlineArea& area, Drawing& drawing) {
    const ShapeKind kind =
        area.kind == OvCenterlineArea::Kind::Text ? ShapeKind::Text : ShapeKind::Solid;
    drawing.shapes.append({kind, area.color, drawing.rings.size(), area.rings.size(), -1});
    for (const QList<OvCenterlinePoint>& ring : area.rings) {
        drawing.paths.begin(toPoint(ring.front()));
        for (qsizetype i = 1; i < ring.size(); ++i)
            drawing.paths.lineTo(toPoint(ring[i]));
        drawing.paths.lineTo(toPoint(ring.front()));
        drawing.uses.append({drawing.paths.size() - 1, false});
        drawing.rings.append({drawing.uses.size() - 1, 1});
    }
}

} // namespace

void appendCenterlines(const OvCenterlines& centerlines, Drawing& drawing) {
    for (const QRgb color : centerlines.colors)
        drawing.palette.append(QColor::fromRgba(color));
    drawing.widths = centerlines.widths;
    drawing.message = centerlines.message;
    for (const OvCenterlinePoint& node : centerlines.nodes)
        drawing.nodes.append(toPoint(node));
    for (const OvCenterlineArea& area : centerlines.areas)
        appendArea(area, drawing);
    for (const OvCenterlineStroke& stroke : centerlines.strokes) {
        appendPath(stroke, drawing.paths);
        drawing.strokes.append({kindOf(stroke.kind), stroke.color, drawing.paths.size() - 1,
                                stroke.width, stroke.widthClass, patternOf(stroke.dashes, drawing),
                                stroke.startNode, stroke.endNode});
    }
}
