#pragma once

#include "tracerecords.h"

#include <stageprogress.h>

#include <QList>

#include <ovpolyline.h>

namespace ovtrace {

/// `point` in drawing coordinates: y is replaced by height - y. x, z and validity stay.
OvVector transform(const OvVector& point, int height);

/// Turns traced outlines into host polylines, in raster order of their start points.
class PolylineOutput {
public:
    /// For an image of the given size, in pixels.
    PolylineOutput(int width, int height, StageProgress progress = {})
        : width(width), height(height), progress(progress) {
    }

    /// Adds the outline of a layer; one without segments is skipped.
    void add(int layer, const TracedPath& path);

    /// Puts the polylines in order, as takePolylines() needs it. Of those that start at the same
    /// point only one remains: that of the highest layer, the last one added of it.
    void finish();

    QList<OvPolyline> takePolylines();
    /// The layer of each polyline that takePolylines() has returned.
    QList<int> takeLayers() {
        return std::move(takenLayers);
    }

private:
    struct Outline {
        OvPolyline polyline;
        double key = 0.0; ///< width * y + x of the start point, before y is flipped
        int layer = 0;
    };

    Outline& outlineAt(std::size_t index) {
        return blocks[index / BlockSize][index % BlockSize];
    }

    static constexpr std::size_t BlockSize = 4096;

    double width;
    int height;
    StageProgress progress;
    /// In blocks, because growing one long list would keep the host waiting.
    std::vector<std::vector<Outline>> blocks;
    std::size_t count = 0;
    double lastKey = 0.0;
    bool inOrder = true;
    /// Which outlines to take, in their order; empty for all as they were added.
    std::vector<std::size_t> order;
    QList<int> takenLayers;
};

} // namespace ovtrace
