#include "geojsonwriter.h"

#include "geojsonhead.h"
#include "polygonring.h"
#include "textbuffer.h"
#include "visible.h"

#include <algorithm>

namespace {

using Points = std::vector<QPointF>;

class FeatureWriter {
public:
    FeatureWriter(const Drawing& drawing, const WriterOptions& options, QIODevice& device)
        : drawing(drawing), placement(drawing.placement()), tolerance(options.deviation),
          json(device) {
        if (options.precision)
            json.setPrecision(*options.precision);
    }

    void write() {
        json << geoJsonHead(drawing);
        for (const Shape& shape : drawing.shapes) {
            if (shape.kind == ShapeKind::Outline)
                writeOutline(shape);
            else
                writeArea(shape);
        }
        for (const Stroke& stroke : drawing.strokes)
            writeStroke(stroke);
        json << "\n]}\n";
    }

private:
    /// The start of a feature, up to what its properties have beside the colour.
    void begin(int color) {
        const QColor& value = drawing.palette[color];
        json << (isFirst ? "\n" : ",\n")
             << "{\"type\":\"Feature\",\"properties\":{\"layer\":" << color << ",\"color\":\""
             << value.name(QColor::HexRgb).toLatin1()
             << "\",\"opacity\":" << QByteArray::number(opacityOf(value));
        isFirst = false;
    }

    void beginGeometry(const char* type) {
        json << "},\"geometry\":{\"type\":\"" << type << "\",\"coordinates\":[";
    }

    void writePoints(const Points& points) {
        bool isFirstPoint = true;
        for (const QPointF& point : points) {
            const QPointF place = placement.map(point);
            json << (isFirstPoint ? "[" : ",[") << place.x() << ',' << place.y() << ']';
            isFirstPoint = false;
        }
    }

    void writeRing(Points points) {
        if (placement.determinant() < 0.0) // a mirror turns rings over
            std::reverse(points.begin(), points.end());
        json << '[';
        writePoints(points);
        json << ']';
    }

    void writeOutline(const Shape& shape) {
        const std::vector<PathPiece> outline = drawing.piecesOf(drawing.outerRing(shape));
        Points ring = polygonRing(flattenedRing(outline, tolerance), drawing.size);
        if (ring.empty())
            return;
        // An outer ring runs counter-clockwise.
        if (signedArea(outline) < 0.0)
            std::reverse(ring.begin(), ring.end());
        begin(shape.color);
        beginGeometry("Polygon");
        writeRing(ring);
        json << "]}}";
    }

    /// The corners of a ring. Each path is cut into straight pieces in its own direction, whichever
    /// way the ring takes it: both regions beside it have the same corners.
    Points cornersOf(const Ring& ring) const {
        Points corners;
        for (qsizetype i = ring.firstUse; i < ring.firstUse + ring.count; ++i) {
            const PathUse& use = drawing.uses[i];
            Points own = flattened(drawing.paths.pieces(use.path), tolerance);
            if (use.backwards)
                std::reverse(own.begin(), own.end());
            corners.insert(corners.end(), own.begin() + (corners.empty() ? 0 : 1), own.end());
        }
        if (!corners.empty() && corners.back() != corners.front())
            corners.push_back(corners.front());
        return corners;
    }

    static const char* nameOf(ShapeKind kind) {
        switch (kind) {
        case ShapeKind::Text:
            return "text";
        case ShapeKind::Solid:
            return "solid";
        default:
            return "region";
        }
    }

    void writeArea(const Shape& shape) {
        begin(shape.color);
        json << ",\"kind\":\"" << nameOf(shape.kind) << '"';
        beginGeometry("Polygon");
        bool isFirstRing = true;
        for (const Ring& ring : drawing.ringsOf(shape)) {
            if (!isFirstRing)
                json << ',';
            isFirstRing = false;
            writeRing(cornersOf(ring));
        }
        json << "]}}";
    }

    static const char* nameOf(StrokeKind kind) {
        switch (kind) {
        case StrokeKind::Dashed:
            return "dashed";
        case StrokeKind::Hatch:
            return "hatch";
        default:
            return "line";
        }
    }

    void writeStroke(const Stroke& stroke) {
        begin(stroke.color);
        json << ",\"kind\":\"" << nameOf(stroke.kind)
             << "\",\"width\":" << stroke.width * drawing.unitsPerPixel();
        beginGeometry("LineString");
        writePoints(flattened(drawing.paths.pieces(stroke.path), tolerance));
        json << "]}}";
    }

    const Drawing& drawing;
    QTransform placement;
    double tolerance; ///< in pixels
    TextBuffer json;
    bool isFirst = true;
};

} // namespace

void GeoJsonWriter::write(const Drawing& drawing, QIODevice& device) const {
    const Drawing visible = visibleParts(drawing, options);
    FeatureWriter(visible, options, device).write();
}
