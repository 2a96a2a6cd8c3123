#pragma once

#include "../drawing.h"
#include "dxfdocument.h"

/// The layers of a drawing in a DXF file: one a colour for outlines and regions; beside strokes one
/// a kind and width, a set of them a colour where there are several.
class DxfLayers {
public:
    explicit DxfLayers(const Drawing& drawing);

    const QList<DxfLayer>& all() const {
        return layers;
    }
    QByteArray ofShape(const Shape& shape) const;
    QByteArray ofStroke(const Stroke& stroke) const;

    /// Empty for a line without dashes.
    QByteArray lineTypeOf(const Stroke& stroke) const;
    /// The patterns of dashes, `scale` units a pixel.
    QList<DxfLineType> lineTypes(double scale) const;

private:
    QByteArray prefix(int color) const;

    const Drawing& drawing;
    QList<DxfLayer> layers;
};

/// The line weight that DXF has nearest to so many millimetres, in hundredths of one.
int dxfLineWeight(double millimetres);
