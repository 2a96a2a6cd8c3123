#include "stroke.h"

#include "../geometry/pathpiece.h"
#include "../geometry/vectors.h"
#include "flatness.h"

#include <algorithm>
#include <cmath>

namespace {

/// A line without repeated corners, and the vectors from each of its edges to its right (for a
/// direction along x, towards -y), of half of the pen's width.
class SidedLine {
public:
    SidedLine(std::span<const QPointF> line, double halfWidth) {
        for (const QPointF& corner : line) {
            if (!corners.empty() && !append(corner, halfWidth))
                continue;
            corners.push_back(corner);
        }
    }

    /// Replaces the line by itself run the other way.
    void reverse() {
        std::reverse(corners.begin(), corners.end());
        std::reverse(sides.begin(), sides.end());
        for (QPointF& side : sides)
            side = -side;
    }

    std::vector<QPointF> corners;
    std::vector<QPointF> sides; ///< of the edges

private:
    bool append(QPointF corner, double halfWidth) {
        const QPointF along = corner - corners.back();
        const double size = length(along);
        if (!(size > 0.0) || !std::isfinite(size))
            return false;
        sides.push_back(QPointF(along.y(), -along.x()) * (halfWidth / size));
        return true;
    }
};

void appendArc(QPointF from, QPointF to, double bulge, RasterPath& stroke) {
    std::vector<QPointF> points;
    flatten(arcPiece(from, to, bulge), Flatness, points);
    for (const QPointF& point : points)
        stroke.lineTo(point);
}

/// From one side of a corner to the other: around it outside, through it inside.
void appendJoin(QPointF corner, QPointF before, QPointF after, bool isRound, RasterPath& stroke) {
    const double turn = cross(before, after);
    if (turn > 0.0 && isRound) {
        // The tangent of a quarter of the angle between vectors of equal lengths.
        const double along = dot(before, before) + dot(before, after);
        const double bulge = turn / (along + std::sqrt(along * along + turn * turn));
        appendArc(corner + before, corner + after, bulge, stroke);
        return;
    }
    if (turn <= 0.0)
        stroke.lineTo(corner);
    stroke.lineTo(corner + after);
}

/// Along the right of an open line, from its first edge to its last.
void appendSide(const SidedLine& line, bool isRound, RasterPath& stroke) {
    const std::size_t edges = line.sides.size();
    for (std::size_t i = 0; i < edges; ++i) {
        stroke.lineTo(line.corners[i + 1] + line.sides[i]);
        if (i + 1 < edges)
            appendJoin(line.corners[i + 1], line.sides[i], line.sides[i + 1], isRound, stroke);
    }
}

void appendEnd(const SidedLine& line, const Pen& pen, RasterPath& stroke) {
    const QPointF end = line.corners.back();
    const QPointF side = line.sides.back();
    if (pen.isRound)
        appendArc(end + side, end - side, 1.0, stroke);
    else
        stroke.lineTo(end - side);
}

void appendFull(std::span<const QPointF> points, const Pen& pen, RasterPath& stroke) {
    SidedLine line(points, pen.width / 2.0);
    if (line.sides.empty()) {
        if (!pen.isRound || line.corners.empty())
            return;
        // A point is a dot.
        line.corners.push_back(line.corners.front());
        line.sides.emplace_back(0.0, -pen.width / 2.0);
    }
    const bool isClosed = line.sides.size() > 1 && line.corners.front() == line.corners.back();
    stroke.moveTo(line.corners.front() + line.sides.front());
    for (int side = 0; side < 2; ++side) {
        appendSide(line, pen.isRound, stroke);
        if (isClosed)
            appendJoin(line.corners.back(), line.sides.back(), line.sides.front(), pen.isRound,
                       stroke);
        else
            appendEnd(line, pen, stroke);
        line.reverse();
        if (isClosed && side == 0)
            stroke.moveTo(line.corners.front() + line.sides.front());
    }
}

/// Cuts a line into its dashes.
class Dashes {
public:
    Dashes(const Pen& pen, RasterPath& stroke)
        : pen(pen), stroke(stroke), left(pen.dashes.front()) {
    }

    void run(std::span<const QPointF> line) {
        dash.assign(1, line.front());
        for (std::size_t i = 1; i < line.size(); ++i)
            edge(line[i - 1], line[i]);
        finish(line.back());
    }

private:
    void edge(QPointF from, QPointF to) {
        const double whole = length(to - from);
        double done = 0.0;
        while (whole - done > left) {
            done += left;
            finish(from + (to - from) * (done / whole));
            index = (index + 1) % pen.dashes.size();
            left = pen.dashes[index];
        }
        left -= whole - done;
        dash.push_back(to);
    }

    void finish(QPointF end) {
        dash.push_back(end);
        if (index % 2 == 0)
            appendFull(dash, pen, stroke);
        dash.assign(1, end);
    }

    const Pen& pen;
    RasterPath& stroke;
    std::vector<QPointF> dash; ///< or gap, as far as it has come
    qsizetype index = 0;       ///< into the pen's dashes
    double left;               ///< of the dash or gap
};

} // namespace

void appendStroke(std::span<const QPointF> line, const Pen& pen, RasterPath& stroke) {
    // Dashes of no length at all would never end.
    const bool isDashed =
        std::any_of(pen.dashes.begin(), pen.dashes.end(), [](double each) { return each > 0.0; });
    if (line.empty())
        return;
    if (isDashed)
        Dashes(pen, stroke).run(line);
    else
        appendFull(line, pen, stroke);
}
