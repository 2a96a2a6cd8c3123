#include "noding.h"

#include "vectors.h"

#include <algorithm>
#include <cmath>
#include <tuple>

namespace {

bool liesBetween(QPointF point, QPointF a, QPointF b) {
    return !isSame(point, a) && !isSame(point, b) && std::min(a.x(), b.x()) <= point.x() &&
           point.x() <= std::max(a.x(), b.x()) && std::min(a.y(), b.y()) <= point.y() &&
           point.y() <= std::max(a.y(), b.y());
}

/// Twice the area of a triangle, its sign that of the turn; the first corner decides the rounding.
double turn(QPointF a, QPointF b, QPointF c) {
    return cross(b - a, c - a);
}

} // namespace

bool Noding::addNodes(std::vector<Corners>& lines) {
    constexpr int MostRounds = 5;
    for (int round = 0; round < MostRounds; ++round) {
        find(lines);
        if (nodes.empty())
            return round > 0;
        // From the end, so that the places before stay.
        std::sort(nodes.begin(), nodes.end(), [](const Node& a, const Node& b) {
            return std::tie(a.line, a.first, a.along) > std::tie(b.line, b.first, b.along);
        });
        for (const Node& node : nodes) {
            Corners& line = lines[node.line];
            if (!isSame(line[node.first], node.place) && !isSame(line[node.first + 1], node.place))
                line.insert(line.begin() + static_cast<std::ptrdiff_t>(node.first) + 1, node.place);
        }
    }
    return true;
}

std::set<std::size_t> Noding::meetingLines(const std::vector<Corners>& lines) {
    find(lines);
    std::set<std::size_t> found;
    for (const Node& node : nodes)
        found.insert(node.line);
    return found;
}

void Noding::find(const std::vector<Corners>& lines) {
    edges.clear();
    entries.clear();
    nodes.clear();
    for (std::size_t line = 0; line < lines.size(); ++line) {
        for (std::size_t i = 0; i + 1 < lines[line].size(); ++i) {
            enter(lines[line][i], lines[line][i + 1], edges.size());
            edges.push_back({line, i});
        }
    }
    std::sort(entries.begin(), entries.end());
    for (std::size_t i = 0; i < entries.size(); ++i) {
        for (std::size_t k = i + 1; k < entries.size() && entries[k].row == entries[i].row &&
                                    entries[k].column == entries[i].column;
             ++k)
            meet(lines, edges[entries[i].edge], edges[entries[k].edge]);
    }
}

/// Into all cells that the edge passes, row by row.
void Noding::enter(QPointF from, QPointF to, std::size_t edge) {
    const auto cellOf = [this](double value) {
        return static_cast<qint64>(std::floor(value / cell));
    };
    if (from.y() > to.y())
        std::swap(from, to);
    const qint64 last = cellOf(to.y());
    for (qint64 row = cellOf(from.y()); row <= last; ++row) {
        const auto xAt = [&](double y) {
            if (to.y() == from.y())
                return from.x();
            const double share = (y - from.y()) / (to.y() - from.y());
            return from.x() + (to.x() - from.x()) * std::clamp(share, 0.0, 1.0);
        };
        double low = xAt(static_cast<double>(row) * cell);
        double high = xAt(static_cast<double>(row + 1) * cell);
        if (to.y() == from.y())
            high = to.x();
        if (low > high)
            std::swap(low, high);
        // A little more: what is rounded must not miss its cell.
        constexpr double Slack = 1e-6;
        for (qint64 column = cellOf(low - Slack * cell); column <= cellOf(high + Slack * cell);
             ++column)
            entries.push_back({row, column, edge});
    }
}

void Noding::meet(const std::vector<Corners>& lines, const Edge& a, const Edge& b) {
    const QPointF p = lines[a.line][a.first];
    const QPointF q = lines[a.line][a.first + 1];
    const QPointF r = lines[b.line][b.first];
    const QPointF s = lines[b.line][b.first + 1];
    const double atR = turn(p, q, r);
    const double atS = turn(p, q, s);
    const double atP = turn(r, s, p);
    const double atQ = turn(r, s, q);
    // A corner on the other edge.
    for (const auto& [side, corner] : {std::pair(atR, r), std::pair(atS, s)}) {
        if (side == 0.0 && liesBetween(corner, p, q))
            add(a, p, q, corner);
    }
    for (const auto& [side, corner] : {std::pair(atP, p), std::pair(atQ, q)}) {
        if (side == 0.0 && liesBetween(corner, r, s))
            add(b, r, s, corner);
    }
    if ((atR < 0.0) == (atS < 0.0) || (atP < 0.0) == (atQ < 0.0) || atR == 0.0 || atS == 0.0 ||
        atP == 0.0 || atQ == 0.0)
        return;
    const QPointF place = p + (q - p) * (atP / (atP - atQ));
    add(a, p, q, place);
    add(b, r, s, place);
}

void Noding::add(const Edge& edge, QPointF from, QPointF to, QPointF place) {
    const QPointF along = to - from;
    nodes.push_back({edge.line, edge.first, dot(place - from, along) / dot(along, along), place});
}
