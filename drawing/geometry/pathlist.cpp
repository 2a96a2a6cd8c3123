#include "pathlist.h"

#include <algorithm>
#include <cmath>

namespace {

bool isFinite(QPointF point) {
    return std::isfinite(point.x()) && std::isfinite(point.y());
}

/// A curve without control points becomes its chord.
void straighten(PathPiece& piece) {
    const bool isCurve = piece.kind == PieceKind::Quadratic || piece.kind == PieceKind::Cubic;
    if (isCurve && !(isFinite(piece.control) && isFinite(piece.control2)))
        piece = linePiece(piece.from, piece.to);
}

/// Takes numbers one after another.
class NumberReader {
public:
    explicit NumberReader(const double* next) : next(next) {
    }
    double number() {
        return *next++;
    }
    QPointF point() {
        const double x = number();
        return {x, number()};
    }

private:
    const double* next;
};

PathPiece readPiece(PieceKind kind, QPointF from, NumberReader& numbers) {
    PathPiece piece{kind, from, {}, {}, {}, 0.0, 0.0};
    switch (kind) {
    case PieceKind::Line:
        break;
    case PieceKind::Arc:
        piece.bulge = numbers.number();
        break;
    case PieceKind::Quadratic:
        piece.control = numbers.point();
        break;
    case PieceKind::Cubic:
        piece.control = numbers.point();
        piece.control2 = numbers.point();
        break;
    case PieceKind::Circle:
    case PieceKind::Ellipse:
        piece.control = numbers.point();
        piece.control2 = numbers.point();
        piece.bulge = numbers.number();
        piece.radius = numbers.number();
        break;
    }
    piece.to = numbers.point();
    return piece;
}

} // namespace

void PathList::begin(QPointF start) {
    paths.append({kinds.size(), numbers.size()});
    numbers.append(start.x());
    numbers.append(start.y());
}

void PathList::add(PieceKind kind, std::initializer_list<double> values) {
    kinds.append(kind);
    for (const double value : values)
        numbers.append(value);
}

void PathList::lineTo(QPointF to) {
    add(PieceKind::Line, {to.x(), to.y()});
}

void PathList::arcTo(QPointF to, double bulge) {
    add(PieceKind::Arc, {bulge, to.x(), to.y()});
}

void PathList::quadraticTo(QPointF control, QPointF to) {
    add(PieceKind::Quadratic, {control.x(), control.y(), to.x(), to.y()});
}

void PathList::cubicTo(QPointF control, QPointF control2, QPointF to) {
    add(PieceKind::Cubic, {control.x(), control.y(), control2.x(), control2.y(), to.x(), to.y()});
}

void PathList::append(const PathPiece& piece) {
    switch (piece.kind) {
    case PieceKind::Line:
        lineTo(piece.to);
        return;
    case PieceKind::Arc:
        arcTo(piece.to, piece.bulge);
        return;
    case PieceKind::Quadratic:
        quadraticTo(piece.control, piece.to);
        return;
    case PieceKind::Cubic:
        cubicTo(piece.control, piece.control2, piece.to);
        return;
    case PieceKind::Circle:
    case PieceKind::Ellipse:
        add(piece.kind,
            {piece.control.x(), piece.control.y(), piece.control2.x(), piece.control2.y(),
             piece.bulge, piece.radius, piece.to.x(), piece.to.y()});
        return;
    }
}

qsizetype PathList::countPieces(qsizetype index) const {
    const qsizetype end = index + 1 < paths.size() ? paths[index + 1].kinds : kinds.size();
    return end - paths[index].kinds;
}

QPointF PathList::start(qsizetype index) const {
    const qsizetype first = paths[index].numbers;
    return {numbers[first], numbers[first + 1]};
}

std::vector<PathPiece> PathList::rawPieces(qsizetype index) const {
    std::vector<PathPiece> pieces;
    const qsizetype count = countPieces(index);
    pieces.reserve(static_cast<std::size_t>(count));
    NumberReader reader(numbers.constData() + paths[index].numbers);
    QPointF from = reader.point();
    for (qsizetype i = 0; i < count; ++i) {
        pieces.push_back(readPiece(kinds[paths[index].kinds + i], from, reader));
        from = pieces.back().to;
    }
    return pieces;
}

void PathList::appendPieces(qsizetype index, bool backwards, std::vector<PathPiece>& pieces) const {
    const std::size_t first = pieces.size();
    NumberReader reader(numbers.constData() + paths[index].numbers);
    QPointF from = reader.point();
    for (qsizetype i = countPieces(index), kind = paths[index].kinds; i > 0; --i, ++kind) {
        pieces.push_back(readPiece(kinds[kind], from, reader));
        from = pieces.back().to;
        straighten(pieces.back());
    }
    if (!backwards)
        return;
    const auto begin = pieces.begin() + static_cast<std::ptrdiff_t>(first);
    std::reverse(begin, pieces.end());
    std::transform(begin, pieces.end(), begin, reversed);
}
