#include "painting.h"

#include "../geometry/outline.h"

#include <QPainter>

QPainterPath toPath(const OvPolyline& polyline, int imageHeight) {
    const Outline outline = transformed(toOutline(polyline), 1.0, -1.0, QPointF(0, imageHeight));
    QPainterPath path(outline.start);
    for (const OutlinePiece& piece : outline.pieces) {
        if (piece.isCurve)
            path.quadTo(piece.control, piece.end);
        else
            path.lineTo(piece.end);
    }
    path.closeSubpath();
    path.setFillRule(Qt::WindingFill); // as SVG fills without being told
    return path;
}

void paintFilled(QPainter& painter, const Drawing& drawing) {
    for (qsizetype i = 0; i < drawing.polylines.size(); ++i)
        painter.fillPath(toPath(drawing.polylines[i], drawing.size.height()),
                         drawing.palette[drawing.layers[i]]);
}
