#include "painting.h"

#include "../geometry/biarcs.h"

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

void paintFilled(QPainter& painter, const Drawing& drawing) {
    for (const Shape& shape : drawing.shapes)
        painter.fillPath(toPainterPath(drawing, shape), drawing.palette[shape.color]);
}
