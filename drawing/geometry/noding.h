#pragma once

#include <QPointF>

#include <set>
#include <vector>

/// Corners of lines; a line that is closed ends where it starts.
using Corners = std::vector<QPointF>;

/// Finds where lines cross or touch one another or themselves: everywhere but at common corners.
class Noding {
public:
    /// `cell`, above 0, is about the length of a usual edge.
    explicit Noding(double cell) : cell(cell) {
    }

    /// Adds corners to all lines where they meet. Rounded places can bring edges to meet that did
    /// not: the search starts anew a few times. Whether anything has been added.
    bool addNodes(std::vector<Corners>& lines);

    /// The indices of the lines that cross or touch one another or themselves elsewhere than in a
    /// corner of both.
    std::set<std::size_t> meetingLines(const std::vector<Corners>& lines);

private:
    struct Edge {
        std::size_t line;
        std::size_t first; ///< the corner that it starts from
    };
    struct Node {
        std::size_t line;
        std::size_t first; ///< of the edge that it lies on
        double along;      ///< 0..1 from the edge's start
        QPointF place;
    };
    struct Entry {
        qint64 row;
        qint64 column;
        std::size_t edge;
        auto operator<=>(const Entry&) const = default;
    };

    void find(const std::vector<Corners>& lines);
    void enter(QPointF from, QPointF to, std::size_t edge);
    void meet(const std::vector<Corners>& lines, const Edge& a, const Edge& b);
    void add(const Edge& edge, QPointF from, QPointF to, QPointF place);

    double cell;
    std::vector<Edge> edges;
    std::vector<Entry> entries; ///< cells that edges pass
    std::vector<Node> nodes;    ///< found
};
