#include "filledareas.h"

FilledAreas::FilledAreas(const Drawing& drawing, bool cutOut) : drawing(drawing) {
    if (drawing.method == Method::Regions && !cutOut)
        underlay.emplace(drawing);
}

FilledArea FilledAreas::at(qsizetype index) const {
    if (underlay) {
        const qsizetype place = underlay->order()[index];
        return {underlay->rings(place), Qt::WindingFill,
                drawing.palette[drawing.shapes[place].color]};
    }
    const Shape& shape = drawing.shapes[index];
    FilledArea area{{},
                    // Outlines as SVG fills without being told.
                    shape.kind == ShapeKind::Outline ? Qt::WindingFill : Qt::OddEvenFill,
                    drawing.palette[shape.color]};
    for (const Ring& ring : drawing.ringsOf(shape))
        area.rings.push_back(drawing.piecesOf(ring));
    return area;
}
