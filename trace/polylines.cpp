#include "polylines.h"

#include "release.h"

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
    const double key = width * first.y1 + first.x1;
    if (count % BlockSize == 0)
        blocks.emplace_back().reserve(BlockSize);
    blocks.back().push_back({builder.take(), key, layer});
    inOrder = inOrder && (count == 0 || lastKey < key);
    lastKey = key;
    ++count;
}

void PolylineOutput::finish() {
    // A path scan delivers its outlines in this order already; others may not.
    if (inOrder)
        return;
    std::vector<std::size_t> all(count);
    std::iota(all.begin(), all.end(), std::size_t(0));
    std::stable_sort(all.begin(), all.end(), [this](std::size_t a, std::size_t b) {
        const Outline& first = outlineAt(a);
        const Outline& second = outlineAt(b);
        return first.key != second.key ? first.key < second.key : first.layer < second.layer;
    });
    for (std::size_t i = 0; i < count; ++i) {
        if (i + 1 == count || outlineAt(all[i]).key < outlineAt(all[i + 1]).key)
            order.push_back(all[i]);
    }
}

QList<OvPolyline> PolylineOutput::takePolylines() {
    QList<OvPolyline> polylines;
    polylines.reserve(static_cast<qsizetype>(inOrder ? count : order.size()));
    takenLayers.reserve(polylines.capacity());
    const auto take = [&](Outline& outline) {
        polylines.append(std::move(outline.polyline));
        takenLayers.append(outline.layer);
    };
    for (const std::size_t index : order)
        take(outlineAt(index));
    for (auto& block : blocks) {
        if (inOrder) {
            for (Outline& outline : block)
                take(outline);
        }
        progress.advance(static_cast<std::int64_t>(block.size()));
        release(block);
    }
    return polylines;
}

} // namespace ovtrace
