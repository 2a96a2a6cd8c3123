#include "polygonring.h"

#include <algorithm>
#include <cmath>

namespace {

double cross(QPointF a, QPointF b) {
    return a.x() * b.y() - a.y() * b.x();
}

double area(const std::vector<QPointF>& ring) {
    double sum = 0.0;
    for (std::size_t i = 0; i + 1 < ring.size(); ++i)
        sum += cross(ring[i] - ring.front(), ring[i + 1] - ring.front());
    return sum / 2.0;
}

/// Whether a corner adds nothing: the same as the one before, or on the way out and back.
bool isSpike(QPointF before, QPointF corner, QPointF after) {
    const QPointF in = corner - before;
    const QPointF out = after - corner;
    return corner == before || (cross(in, out) == 0.0 && QPointF::dotProduct(in, out) < 0.0);
}

/// -1, 0 or 1: on which side of a line a point lies.
int side(QPointF from, QPointF to, QPointF point) {
    const double value = cross(to - from, point - from);
    return (value > 0.0 ? 1 : 0) - (value < 0.0 ? 1 : 0);
}

bool isInBox(QPointF from, QPointF to, QPointF point) {
    const auto [left, right] = std::minmax(from.x(), to.x());
    const auto [low, high] = std::minmax(from.y(), to.y());
    return point.x() >= left && point.x() <= right && point.y() >= low && point.y() <= high;
}

struct Edge {
    QPointF from;
    QPointF to;
    std::size_t index;
    double left;
    double right;
};

bool meet(const Edge& a, const Edge& b) {
    const int startB = side(a.from, a.to, b.from);
    const int endB = side(a.from, a.to, b.to);
    const int startA = side(b.from, b.to, a.from);
    const int endA = side(b.from, b.to, a.to);
    if (startB * endB < 0 && startA * endA < 0)
        return true;
    return (startB == 0 && isInBox(a.from, a.to, b.from)) ||
           (endB == 0 && isInBox(a.from, a.to, b.to)) ||
           (startA == 0 && isInBox(b.from, b.to, a.from)) ||
           (endA == 0 && isInBox(b.from, b.to, a.to));
}

} // namespace

std::vector<QPointF> polygonRing(const std::vector<QPointF>& ring, QSize image) {
    std::vector<QPointF> kept;
    for (std::size_t i = 0; i + 1 < ring.size(); ++i) {
        const QPointF corner(std::clamp(ring[i].x(), 0.0, double(image.width())),
                             std::clamp(ring[i].y(), 0.0, double(image.height())));
        while (kept.size() >= 2 && isSpike(kept[kept.size() - 2], kept.back(), corner))
            kept.pop_back();
        if (kept.empty() || kept.back() != corner)
            kept.push_back(corner);
    }
    // The same where the end meets the start.
    std::size_t first = 0;
    while (kept.size() - first >= 3) {
        const std::size_t last = kept.size() - 1;
        if (isSpike(kept[last - 1], kept[last], kept[first]) || kept[last] == kept[first])
            kept.pop_back();
        else if (isSpike(kept[last], kept[first], kept[first + 1]))
            ++first;
        else
            break;
    }
    kept.erase(kept.begin(), kept.begin() + static_cast<std::ptrdiff_t>(first));
    if (kept.size() < 3)
        return {};
    kept.push_back(kept.front());
    return area(kept) == 0.0 ? std::vector<QPointF>() : kept;
}

bool isSimple(const std::vector<QPointF>& ring) {
    std::vector<Edge> edges;
    for (std::size_t i = 0; i + 1 < ring.size(); ++i) {
        const auto [left, right] = std::minmax(ring[i].x(), ring[i + 1].x());
        edges.push_back({ring[i], ring[i + 1], i, left, right});
    }
    std::sort(edges.begin(), edges.end(),
              [](const Edge& a, const Edge& b) { return a.left < b.left; });
    const std::size_t count = edges.size();
    for (std::size_t i = 0; i < count; ++i) {
        for (std::size_t k = i + 1; k < count && edges[k].left <= edges[i].right; ++k) {
            const std::size_t distance = edges[i].index > edges[k].index
                                             ? edges[i].index - edges[k].index
                                             : edges[k].index - edges[i].index;
            const bool areNeighbours = distance == 1 || distance == count - 1;
            if (!areNeighbours && meet(edges[i], edges[k]))
                return false;
        }
    }
    return true;
}
