#pragma once

#include "layering.h"
#include "tracerecords.h"

#include <stageprogress.h>

#include <memory>

namespace ovtrace {

/// Finds the closed outer boundaries of the regions of every layer.
///
/// A region's cells have one colour and touch at edges or corners. Its boundary is walked along
/// cell edges, clockwise on a screen whose y axis points down, from the upper-left corner of its
/// first cell in raster order. Boundaries of holes and those of fewer than `pathomit` corners are
/// left out. One sweep over the grid finds the boundaries of all layers: a walk never leaves its
/// colour. They come in raster order of their first corners, over all layers together; two never
/// start at the same corner, because the cell to its lower right belongs to one layer alone.
class PathScan {
public:
    /// Scans `layers`, whose grid must outlive the scan.
    PathScan(const LayerSet& layers, float pathomit, StageProgress progress = {});
    ~PathScan();
    PathScan(const PathScan&) = delete;
    PathScan& operator=(const PathScan&) = delete;

    /// Stores the next boundary in `path` and returns its layer; -1 when there is none left.
    int next(Path& path);

private:
    class Sweep;
    template <typename Cell> class CellSweep;

    std::unique_ptr<Sweep> sweep;
};

} // namespace ovtrace
