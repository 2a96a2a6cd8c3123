#include "placement.h"

#include <cmath>

namespace {

/// What rounding can leave of a difference of numbers as large as the transformation's.
constexpr double Rounding = 1e-12;

bool keepsAngles(const QTransform& placement) {
    const QPointF x(placement.m11(), placement.m12());
    const QPointF y(placement.m21(), placement.m22());
    const double size = QPointF::dotProduct(x, x) + QPointF::dotProduct(y, y);
    return std::abs(QPointF::dotProduct(x, y)) <= Rounding * size &&
           std::abs(QPointF::dotProduct(x, x) - QPointF::dotProduct(y, y)) <= Rounding * size;
}

PathPiece mapped(const PathPiece& piece, const QTransform& placement) {
    PathPiece result = piece;
    result.from = placement.map(piece.from);
    result.to = placement.map(piece.to);
    result.control = placement.map(piece.control);
    result.control2 = placement.map(piece.control2);
    if (piece.kind == PieceKind::Ellipse) // a vector
        result.control2 -= placement.map(QPointF());
    const double determinant = placement.determinant();
    result.radius = piece.radius * std::sqrt(std::abs(determinant));
    if (determinant < 0.0)
        result.bulge = -piece.bulge;
    return result;
}

bool isRound(PieceKind kind) {
    return kind == PieceKind::Arc || kind == PieceKind::Circle || kind == PieceKind::Ellipse;
}

} // namespace

std::vector<PathPiece> placed(const std::vector<PathPiece>& pieces, const QTransform& placement) {
    const bool staysRound = keepsAngles(placement);
    std::vector<PathPiece> result;
    result.reserve(pieces.size());
    for (const PathPiece& piece : pieces) {
        if (staysRound || !isRound(piece.kind)) {
            result.push_back(mapped(piece, placement));
            continue;
        }
        for (const PathPiece& cubic :
             piece.kind == PieceKind::Arc ? arcAsCubics(piece) : asCubics(piece))
            result.push_back(mapped(cubic, placement));
    }
    return result;
}
