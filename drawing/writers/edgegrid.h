#pragma once

#include <QPointF>
#include <QSize>

#include <vector>

/// Straight edges with ranks, sorted into square cells, for looking up how near one is.
class EdgeGrid {
public:
    /// `reach` is the farthest that is looked for, in pixels.
    EdgeGrid(QSize size, double reach);

    void add(QPointF from, QPointF to, int rank);
    /// Call once between the last add() and the first clearance().
    void sort();

    /// The distance of the nearest edge of a rank below `rank`; `reach` where none is nearer.
    double clearance(QPointF point, int rank) const;

private:
    struct Edge {
        QPointF from;
        QPointF to;
        int rank;
    };
    struct Entry {
        std::size_t cell;
        std::size_t edge;
    };

    int column(double x) const;
    int row(double y) const;

    double reach;
    int columns;
    int rows;
    std::vector<Edge> edges;
    std::vector<Entry> entries;      ///< until sort()
    std::vector<std::size_t> starts; ///< of each cell in `sorted`, and the end
    std::vector<std::size_t> sorted; ///< edges by cell
};
