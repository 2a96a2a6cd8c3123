#pragma once

#include "tracerecords.h"

#include <QList>

#include <ovpolyline.h>

namespace ovtrace {

/// `point` in drawing coordinates: y is replaced by height - y. x, z and validity stay.
OvVector transform(const OvVector& point, int height);

/// Turns traced outlines into host polylines, in raster order of their start points.
class PolylineOutput {
public:
    /// For an image of the given size, in pixels.
    PolylineOutput(int width, int height) : width(width), height(height) {
    }

    /// Adds the outline of a layer; one without segments is skipped.
    void add(int layer, const TracedPath& path);

    /// Puts the polylines in order, as take() and takeLayers() need it. Of those that start at
    /// the same point only the one added last remains.
    void finish();

    QList<OvPolyline> takePolylines() {
        return std::move(polylines);
    }
    /// The layer of each polyline.
    QList<int> takeLayers() {
        return std::move(layers);
    }

private:
    double width;
    int height;
    QList<OvPolyline> polylines;
    QList<int> layers;
    std::vector<double> keys; ///< width * y + x of the start points, before y is flipped
};

} // namespace ovtrace
