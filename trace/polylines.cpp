#include "polylines.h"

#include <algorithm>
#include <numeric>

namespace ovtrace {
namespace {

/// The work of appending a segment, in that of a pixel.
constexpr int SegmentWork = 16;

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
    for (const Segment& segment : path) {
        builder.append(segment);
        progress.advance(SegmentWork);
    }
    if (static_cast<std::size_t>(keys.size()) % BlockSize == 0)
        blocks.emplace_back().reserve(BlockSize);
    blocks.back().push_back(builder.take());
    layers.append(layer);
    const double key = width * first.y1 + first.x1;
    inOrder = inOrder && (keys.isEmpty() || keys.constLast() < key);
    keys.append(key);
}

void PolylineOutput::finish() {
    // A path scan delivers its outlines in this order already; others may not.
    if (inOrder)
        return;
    const auto keyOf = [this](std::size_t i) { return keys.at(static_cast<qsizetype>(i)); };
    const auto layerOf = [this](std::size_t i) { return layers.at(static_cast<qsizetype>(i)); };
    std::vector<std::size_t> all(static_cast<std::size_t>(keys.size()));
    std::iota(all.begin(), all.end(), std::size_t(0));
    std::stable_sort(all.begin(), all.end(), [&](std::size_t a, std::size_t b) {
        return keyOf(a) != keyOf(b) ? keyOf(a) < keyOf(b) : layerOf(a) < layerOf(b);
    });
    QList<int> sortedLayers;
    for (std::size_t i = 0; i < all.size(); ++i) {
        if (i + 1 < all.size() && !(keyOf(all[i]) < keyOf(all[i + 1])))
            continue;
        order.push_back(all[i]);
        sortedLayers.append(layerOf(all[i]));
    }
    layers.swap(sortedLayers);
}

QList<OvPolyline> PolylineOutput::takePolylines() {
    QList<OvPolyline> polylines;
    polylines.reserve(keys.size());
    for (const std::size_t index : order)
        polylines.append(std::move(polylineAt(index)));
    for (auto& block : blocks) {
        if (order.empty()) {
            for (OvPolyline& polyline : block)
                polylines.append(std::move(polyline));
        }
        progress.advance(static_cast<std::int64_t>(block.size()));
        block = {};
    }
    return polylines;
}

} // namespace ovtrace
