#pragma once

#include "outlines.h"
#include "stroke.h"

#include <QColor>
#include <QImage>

#include <vector>

namespace ovtrace {

/// The colours of a drawing's ink, the most used first, and that of each stroke and area.
struct LineColors {
    std::vector<QRgb> colors;
    std::vector<int> ofStroke; ///< 0 for dropped ones
    std::vector<int> ofArea;
};

/// Looks at the inkiest pixels of each stroke and area; alike colours are one.
LineColors findColors(const QImage& image, const InkLevels& ink, const std::vector<Stroke>& strokes,
                      const std::vector<InkArea>& areas);

} // namespace ovtrace
