#include "edgegrid.h"

#include "../geometry/vectors.h"

#include <algorithm>

namespace {

constexpr double CellSide = 4.0; ///< pixels

int cellsIn(int pixels) {
    return static_cast<int>(pixels / CellSide) + 1;
}

int cellOf(double place, int cells) {
    return static_cast<int>(std::clamp(place / CellSide, 0.0, static_cast<double>(cells - 1)));
}

double distanceTo(QPointF point, QPointF from, QPointF to) {
    const QPointF along = to - from;
    const double square = dot(along, along);
    const double t = square > 0.0 ? std::clamp(dot(point - from, along) / square, 0.0, 1.0) : 0.0;
    return length(point - from - along * t);
}

} // namespace

EdgeGrid::EdgeGrid(QSize size, double reach)
    : reach(reach), columns(cellsIn(size.width())), rows(cellsIn(size.height())) {
}

int EdgeGrid::column(double x) const {
    return cellOf(x, columns);
}

int EdgeGrid::row(double y) const {
    return cellOf(y, rows);
}

void EdgeGrid::add(QPointF from, QPointF to, int rank) {
    // Pieces no longer than a cell, so that a slanting edge does not fill its whole box.
    const int parts = std::max(1, static_cast<int>(length(to - from) / CellSide));
    for (int i = 0; i < parts; ++i) {
        const QPointF start = from + (to - from) * (static_cast<double>(i) / parts);
        const QPointF end = from + (to - from) * (static_cast<double>(i + 1) / parts);
        const int lastColumn = column(std::max(start.x(), end.x()));
        const int lastRow = row(std::max(start.y(), end.y()));
        for (int r = row(std::min(start.y(), end.y())); r <= lastRow; ++r) {
            for (int c = column(std::min(start.x(), end.x())); c <= lastColumn; ++c)
                entries.push_back({static_cast<std::size_t>(r) * static_cast<std::size_t>(columns) +
                                       static_cast<std::size_t>(c),
                                   edges.size()});
        }
        edges.push_back({start, end, rank});
    }
}

void EdgeGrid::sort() {
    starts.assign(static_cast<std::size_t>(columns) * static_cast<std::size_t>(rows) + 1, 0);
    for (const Entry& entry : entries)
        ++starts[entry.cell + 1];
    for (std::size_t i = 1; i < starts.size(); ++i)
        starts[i] += starts[i - 1];
    sorted.resize(entries.size());
    std::vector<std::size_t> next(starts.begin(), starts.end() - 1);
    for (const Entry& entry : entries)
        sorted[next[entry.cell]++] = entry.edge;
    entries.clear();
    entries.shrink_to_fit();
}

double EdgeGrid::clearance(QPointF point, int rank) const {
    double least = reach;
    for (int r = row(point.y() - reach); r <= row(point.y() + reach); ++r) {
        for (int c = column(point.x() - reach); c <= column(point.x() + reach); ++c) {
            const std::size_t cell =
                static_cast<std::size_t>(r) * static_cast<std::size_t>(columns) +
                static_cast<std::size_t>(c);
            for (std::size_t i = starts[cell]; i < starts[cell + 1]; ++i) {
                const Edge& edge = edges[sorted[i]];
                if (edge.rank < rank)
                    least = std::min(least, distanceTo(point, edge.from, edge.to));
            }
        }
    }
    return least;
}
