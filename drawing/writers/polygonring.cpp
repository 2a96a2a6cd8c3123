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
