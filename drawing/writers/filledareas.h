#pragma once

#include "../drawing.h"
#include "underlay.h"

#include <optional>

/// What to fill for one shape.
struct FilledArea {
    std::vector<std::vector<PathPiece>> rings; ///< closed; y up
    Qt::FillRule rule;
    QColor color;
};

/// The areas to fill to paint a drawing, in the order of painting.
class FilledAreas {
public:
    /// Of all shapes of the drawing, which must outlive it. Regions reach under one another so that
    /// no seams show, unless they are to be cut out.
    FilledAreas(const Drawing& drawing, bool cutOut);

    qsizetype size() const {
        return drawing.shapes.size();
    }
    /// 0 <= index < size().
    FilledArea at(qsizetype index) const;

private:
    const Drawing& drawing;
    std::optional<Underlay> underlay;
};
