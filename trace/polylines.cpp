#include "polylines.h"

#include <algorithm>
#include <functional>
#include <numeric>

namespace ovtrace {
namespace {

class PolylineBuilder {
public:
    PolylineBuilder(int height, double x, double y) : height(height) {
        polyline.appendVertex(drawingPoint(x, y), 0.0, 0.0, 0.0);
    }

    void append(const Segment& segment) {
        if (segment.type == Segment::Line) {
            polyline.appendVertex(drawingPoint(segment.x2, segment.y2), 0.0, 0.0, 0.0);
            return;
        }
        OvSpline spline;
        spline.setDegree(2);
        spline.appendControlPoint(polyline.getEndPoint());
        spline.appendControlPoint(drawingPoint(segment.x2, segment.y2));
        spline.appendControlPoint(drawingPoint(segment.x3, segment.y3));
        polyline.appendShape(spline, false);
    }

    OvPolyline take() {
        return std::move(polyline);
    }

private:
    OvVector drawingPoint(double x, double y) const {
        return transform(OvVector(x, y, 0.0, true), height);
    }

    int height;
    OvPolyline polyline;
};

} // namespace

OvVector transform(const OvVector& point, int height) {
    OvVector transformed = point;
    transformed.y = static_cast<double>(height) - point.y;
    return transformed;
}

void PolylineOutput::add(int layer, const TracedPath& path) {
    if (path.empty())
        return;
    const Segment& first = path.front();
    PolylineBuilder builder(height, first.x1, first.y1);
    for (const Segment& segment : path)
        builder.append(segment);
    polylines.append(builder.take());
    layers.append(layer);
    keys.push_back(width * first.y1 + first.x1);
}

void PolylineOutput::finish() {
    // A path scan delivers its outlines in this order already; others may not.
    if (std::adjacent_find(keys.begin(), keys.end(), std::greater_equal<>()) == keys.end())
        return;
    std::vector<std::size_t> order(keys.size());
    std::iota(order.begin(), order.end(), std::size_t(0));
    std::stable_sort(order.begin(), order.end(),
                     [this](std::size_t a, std::size_t b) { return keys[a] < keys[b]; });
    QList<OvPolyline> sortedPolylines;
    QList<int> sortedLayers;
    std::vector<double> sortedKeys;
    for (std::size_t i = 0; i < order.size(); ++i) {
        if (i + 1 < order.size() && !(keys[order[i]] < keys[order[i + 1]]))
            continue;
        sortedPolylines.append(polylines[static_cast<qsizetype>(order[i])]);
        sortedLayers.append(layers[static_cast<qsizetype>(order[i])]);
        sortedKeys.push_back(keys[order[i]]);
    }
    polylines.swap(sortedPolylines);
    layers.swap(sortedLayers);
    keys.swap(sortedKeys);
}

} // namespace ovtrace
