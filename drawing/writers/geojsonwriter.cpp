#include "geojsonwriter.h"

#include "textbuffer.h"

#include <algorithm>

void GeoJsonWriter::write(const Drawing& drawing, QIODevice& device) const {
    TextBuffer json(device);
    if (options.precision)
        json.setPrecision(*options.precision);
    const double scale = drawing.unitsPerPixel();
    json << "{\"type\":\"FeatureCollection\",\"features\":[";
    for (qsizetype i = 0; i < drawing.shapes.size(); ++i) {
        const Shape& shape = drawing.shapes[i];
        std::vector<PathPiece> outline = drawing.piecesOf(drawing.outerRing(shape));
        for (PathPiece& piece : outline)
            piece = transformed(piece, scale, false, QPointF());
        std::vector<QPointF> ring = flattenedRing(outline, options.deviation * scale);
        // A ring has four positions at least, and an outer one runs counter-clockwise.
        while (ring.size() < 4)
            ring.push_back(ring.front());
        if (signedArea(outline) < 0.0)
            std::reverse(ring.begin(), ring.end());
        const QColor& color = drawing.palette[shape.color];
        json << (i > 0 ? ",\n" : "\n")
             << "{\"type\":\"Feature\",\"properties\":{\"layer\":" << shape.color << ",\"color\":\""
             << color.name(QColor::HexRgb).toLatin1()
             << "\",\"opacity\":" << QByteArray::number(opacityOf(color))
             << "},\"geometry\":{\"type\":\"Polygon\",\"coordinates\":[[";
        for (std::size_t k = 0; k < ring.size(); ++k)
            json << (k > 0 ? ",[" : "[") << ring[k].x() << ',' << ring[k].y() << ']';
        json << "]]}}";
    }
    json << "\n]}\n";
}
