#pragma once

#include "rasterpath.h"

#include <QList>

/// How a line is drawn.
struct Pen {
    double width = 1.0;   ///< pixels
    bool isRound = false; ///< at its ends and corners; otherwise cut straight
    QList<double> dashes =
        {}; ///< lengths of dash, gap, dash, gap ... in pixels; none for a full line
};

/// Appends to `stroke` what the pen covers along a line, which is closed when it ends where it
/// starts; to be filled by FillRule::NonZero.
void appendStroke(std::span<const QPointF> line, const Pen& pen, RasterPath& stroke);
