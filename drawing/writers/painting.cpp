#include "painting.h"

#include "filledareas.h"

#include <QPainter>

namespace {

void appendPiece(QPainterPath& path, const PathPiece& piece) {
    switch (piece.kind) {
    case PieceKind::Line:
        path.lineTo(piece.to);
        return;
    case PieceKind::Quadratic:
        path.quadTo(piece.control, piece.to);
        return;
    case PieceKind::Cubic:
        path.cubicTo(piece.control, piece.control2, piece.to);
        return;
    case PieceKind::Arc:
        for (const PathPiece& part : arcAsCubics(piece))
            path.cubicTo(part.control, part.control2, part.to);
        return;
    case PieceKind::Circle:
    case PieceKind::Ellipse:
        for (const PathPiece& quarter : asCubics(piece))
            path.cubicTo(quarter.control, quarter.control2, quarter.to);
        return;
    }
}

} // namespace

void appendTo(QPainterPath& path, std::span<const PathPiece> pieces, int imageHeight) {
    bool isFirst = true;
    for (const PathPiece& piece : pieces) {
        const PathPiece down = transformed(piece, 1.0, true, QPointF(0, imageHeight));
        if (isFirst)
            path.moveTo(down.from);
        isFirst = false;
        appendPiece(path, down);
    }
}

QPainterPath toPainterPath(const Drawing& drawing, const Shape& shape) {
    QPainterPath path;
    for (const Ring& ring : drawing.ringsOf(shape)) {
        appendTo(path, drawing.piecesOf(ring), drawing.size.height());
        path.closeSubpath();
    }
    // Outlines as SVG fills without being told.
    path.setFillRule(shape.kind == ShapeKind::Outline ? Qt::WindingFill : Qt::OddEvenFill);
    return path;
}

namespace {

void paintStroke(QPainter& painter, const Drawing& drawing, const Stroke& stroke) {
    QPainterPath path;
    const std::vector<PathPiece> pieces = drawing.paths.pieces(stroke.path);
    appendTo(path, pieces, drawing.size.height());
    if (pieces.back().to == pieces.front().from)
        path.closeSubpath();
    QPen pen(drawing.palette[stroke.color], stroke.width);
    pen.setCapStyle(stroke.dashPattern < 0 ? Qt::RoundCap : Qt::FlatCap);
    pen.setJoinStyle(Qt::RoundJoin);
    if (stroke.dashPattern >= 0) {
        // Qt counts dashes in widths of the pen.
        QList<qreal> pattern;
        for (const double each : drawing.dashPatterns[stroke.dashPattern])
            pattern.append(each / stroke.width);
        pen.setDashPattern(pattern);
    }
    painter.strokePath(path, pen);
}

} // namespace

void paintFilled(QPainter& painter, const Drawing& drawing, bool cutOut) {
    const FilledAreas areas(drawing, cutOut);
    for (qsizetype i = 0; i < areas.size(); ++i) {
        const FilledArea area = areas.at(i);
        QPainterPath path;
        for (const std::vector<PathPiece>& ring : area.rings) {
            appendTo(path, ring, drawing.size.height());
            path.closeSubpath();
        }
        path.setFillRule(area.rule);
        painter.fillPath(path, area.color);
    }
    for (const Stroke& stroke : drawing.strokes)
        paintStroke(painter, drawing, stroke);
}
