#include "drawing.h"

#include <algorithm>

std::vector<PathPiece> Drawing::piecesOf(const Ring& ring) const {
    std::vector<PathPiece> pieces;
    for (qsizetype i = 0; i < ring.count; ++i) {
        const PathUse& use = uses[ring.firstUse + i];
        paths.appendPieces(use.path, use.backwards, pieces);
    }
    return pieces;
}

void Drawing::appendShapeOfLastPath(ShapeKind kind, int color) {
    uses.append({paths.size() - 1, false});
    rings.append({uses.size() - 1, 1});
    shapes.append({kind, color, rings.size() - 1, 1, -1});
}

Drawing withoutColors(const Drawing& drawing, const QList<int>& colors) {
    Drawing result = drawing;
    QList<qsizetype> places(drawing.shapes.size(), -1);
    result.shapes.clear();
    for (qsizetype i = 0; i < drawing.shapes.size(); ++i) {
        Shape shape = drawing.shapes[i];
        if (colors.contains(shape.color))
            continue;
        // Enclosing regions come first, so that their new places are known.
        while (shape.enclosing >= 0 && places[shape.enclosing] < 0)
            shape.enclosing = drawing.shapes[shape.enclosing].enclosing;
        if (shape.enclosing >= 0)
            shape.enclosing = places[shape.enclosing];
        places[i] = result.shapes.size();
        result.shapes.append(shape);
    }
    result.strokes.removeIf([&](const Stroke& stroke) { return colors.contains(stroke.color); });
    return result;
}
