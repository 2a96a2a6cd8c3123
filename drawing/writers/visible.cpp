#include "visible.h"

#include "../geometry/vectors.h"

#include <algorithm>

namespace {

/// How much of the piece lies on the image's rim.
double lengthOnRim(const PathPiece& piece, const QSize& size) {
    if (piece.kind != PieceKind::Line)
        return 0.0;
    // Rims are exact in maps; the outlines of the engine keep off them by no more than a pixel.
    constexpr double Near = 1.0;
    const auto beside = [&](double a, double b, double end) {
        return (a < Near && b < Near) || (a > end - Near && b > end - Near);
    };
    const bool onRim = beside(piece.from.x(), piece.to.x(), size.width()) ||
                       beside(piece.from.y(), piece.to.y(), size.height());
    return onRim ? length(piece.to - piece.from) : 0.0;
}

} // namespace

int backgroundColor(const Drawing& drawing) {
    QList<double> covered(drawing.palette.size(), 0.0);
    for (const Shape& shape : drawing.shapes) {
        for (const PathPiece& piece : drawing.piecesOf(drawing.outerRing(shape)))
            covered[shape.color] += lengthOnRim(piece, drawing.size);
    }
    const auto most = std::max_element(covered.begin(), covered.end());
    return most == covered.end() || *most == 0.0 ? -1 : static_cast<int>(most - covered.begin());
}

Drawing visibleParts(const Drawing& drawing, const WriterOptions& options) {
    QList<int> hidden;
    if (options.dropBackground)
        hidden.append(backgroundColor(drawing));
    for (const QColor& color : options.hiddenColors) {
        for (qsizetype i = 0; i < drawing.palette.size(); ++i) {
            if (drawing.palette[i].rgba() == color.rgba())
                hidden.append(static_cast<int>(i));
        }
    }
    return hidden.isEmpty() ? drawing : withoutColors(drawing, hidden);
}
