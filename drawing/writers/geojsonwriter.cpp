#include "geojsonwriter.h"

#include "../geometry/outline.h"
#include "textbuffer.h"

#include <algorithm>

void GeoJsonWriter::write(const Drawing& drawing, QIODevice& device) const {
    TextBuffer json(device);
    if (options.precision)
        json.setPrecision(*options.precision);
    const double scale = drawing.unitsPerPixel();
    json << "{\"type\":\"FeatureCollection\",\"features\":[";
    for (qsizetype i = 0; i < drawing.polylines.size(); ++i) {
        const Outline outline =
            transformed(toOutline(drawing.polylines[i]), scale, scale, QPointF());
        std::vector<QPointF> ring = flattened(outline, options.deviation * scale);
        // A ring has four positions at least, and an outer one runs counter-clockwise.
        while (ring.size() < 4)
            ring.push_back(ring.front());
        if (signedArea(outline) < 0.0)
            std::reverse(ring.begin(), ring.end());
        const QColor& color = drawing.palette[drawing.layers[i]];
        json << (i > 0 ? ",\n" : "\n")
             << "{\"type\":\"Feature\",\"properties\":{\"layer\":" << drawing.layers[i]
             << ",\"color\":\"" << color.name(QColor::HexRgb).toLatin1()
             << "\",\"opacity\":" << QByteArray::number(opacityOf(color))
             << "},\"geometry\":{\"type\":\"Polygon\",\"coordinates\":[[";
        for (std::size_t k = 0; k < ring.size(); ++k)
            json << (k > 0 ? ",[" : "[") << ring[k].x() << ',' << ring[k].y() << ']';
        json << "]]}}";
    }
    json << "\n]}\n";
}
