#pragma once

#include "pathpiece.h"

#include <QList>

/// Paths one after another in two runs of numbers: millions of them stay compact, and copies are
/// shared until one of them is changed.
///
/// Coordinates are those of the drawing: one unit a pixel, y up.
class PathList {
public:
    /// Begins a path at a point. The functions after it append pieces to the last path.
    void begin(QPointF start);
    void lineTo(QPointF to);
    void arcTo(QPointF to, double bulge);
    void quadraticTo(QPointF control, QPointF to);
    void cubicTo(QPointF control, QPointF control2, QPointF to);

    /// A piece as it is; it starts where the path ends.
    void append(const PathPiece& piece);
    /// A path of that one piece.
    void appendPath(const PathPiece& piece) {
        begin(piece.from);
        append(piece);
    }

    qsizetype size() const {
        return paths.size();
    }
    bool isEmpty() const {
        return paths.isEmpty();
    }
    /// The number of pieces of a path, 0 <= index < size(), here and below.
    qsizetype countPieces(qsizetype index) const;
    QPointF start(qsizetype index) const;

    /// Appends the pieces of a path, or of the path run backwards. A curve whose control points are
    /// not finite (strange tolerances of the tracer give some) is its chord.
    void appendPieces(qsizetype index, bool backwards, std::vector<PathPiece>& pieces) const;
    std::vector<PathPiece> pieces(qsizetype index) const {
        std::vector<PathPiece> result;
        appendPieces(index, false, result);
        return result;
    }
    /// The same with every number as it was given, finite or not.
    std::vector<PathPiece> rawPieces(qsizetype index) const;

private:
    struct Path {
        qsizetype kinds;   ///< where its pieces begin in `kinds`
        qsizetype numbers; ///< and its start in `numbers`
    };

    void add(PieceKind kind, std::initializer_list<double> values);

    QList<Path> paths;
    QList<PieceKind> kinds;
    /// The start of each path, then for each piece what its kind needs, its end last.
    QList<double> numbers;
};
