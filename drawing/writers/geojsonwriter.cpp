#include "geojsonwriter.h"

#include "../geometry/polygons.h"
#include "../geometry/vectors.h"
#include "geojsonhead.h"
#include "polygonring.h"
#include "textbuffer.h"
#include "visible.h"

#include <algorithm>
#include <cmath>
#include <optional>

namespace {

/// About the length of an edge, in pixels.
constexpr double UsualEdge = 2.0;

class FeatureWriter {
public:
    FeatureWriter(const Drawing& drawing, const WriterOptions& options, QIODevice& device)
        : drawing(drawing), placement(drawing.placement()), tolerance(options.deviation),
          cell(UsualEdge * drawing.unitsPerPixel()), json(device) {
        if (!options.precision)
            return;
        json.setPrecision(*options.precision);
        steps = std::pow(10.0, *options.precision);
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

    QPointF insideImage(QPointF point) const {
        return {std::clamp(point.x(), 0.0, double(drawing.size.width())),
                std::clamp(point.y(), 0.0, double(drawing.size.height()))};
    }

    /// Where a point is written: what is rounded must not make edges cross.
    QPointF placed(QPointF point) const {
        const QPointF place = placement.map(point);
        if (!steps)
            return place;
        return {std::round(place.x() * *steps) / *steps, std::round(place.y() * *steps) / *steps};
    }

    void writePoints(const Corners& points) {
        bool isFirstPoint = true;
        for (const QPointF& point : points) {
            json << (isFirstPoint ? "[" : ",[") << point.x() << ',' << point.y() << ']';
            isFirstPoint = false;
        }
    }

    void writeRings(const Polygon& polygon) {
        json << "[[";
        writePoints(polygon.outer);
        json << ']';
        for (const Corners& hole : polygon.holes) {
            json << ",[";
            writePoints(hole);
            json << ']';
        }
        json << ']';
    }

    void writeGeometry(const std::vector<Polygon>& polygons) {
        json << "},\"geometry\":{\"type\":\"";
        if (polygons.size() == 1) {
            json << "Polygon\",\"coordinates\":";
            writeRings(polygons.front());
        } else {
            json << "MultiPolygon\",\"coordinates\":[";
            for (const Polygon& polygon : polygons) {
                if (&polygon != &polygons.front())
                    json << ',';
                writeRings(polygon);
            }
            json << ']';
        }
        json << "}}";
    }

    void writeOutline(const Shape& shape) {
        const std::vector<PathPiece> outline = drawing.piecesOf(drawing.outerRing(shape));
        Corners ring = polygonRing(flattenedRing(outline, tolerance), drawing.size);
        std::transform(ring.begin(), ring.end(), ring.begin(),
                       [this](QPointF point) { return placed(point); });
        // An outer ring runs counter-clockwise.
        if (areaOf(ring) < 0.0)
            std::reverse(ring.begin(), ring.end());
        const std::vector<Polygon> polygons = polygonsOf({ring}, cell);
        if (polygons.empty())
            return;
        begin(shape.color);
        writeGeometry(polygons);
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

    static const char* lineName(StrokeKind kind) {
        switch (kind) {
        case StrokeKind::Dashed:
            return "dashed";
        case StrokeKind::Hatch:
            return "hatch";
        default:
            return "line";
        }
    }

    /// The corners of a ring, placed. Each path is cut into straight pieces in its own direction,
    /// whichever way the ring takes it: both regions beside it have the same corners.
    Corners cornersOf(const Ring& ring) const {
        Corners corners;
        for (qsizetype i = ring.firstUse; i < ring.firstUse + ring.count; ++i) {
            const PathUse& use = drawing.uses[i];
            Corners own = flattened(drawing.paths.pieces(use.path), tolerance);
            if (use.backwards)
                std::reverse(own.begin(), own.end());
            corners.insert(corners.end(), own.begin() + (corners.empty() ? 0 : 1), own.end());
        }
        std::transform(corners.begin(), corners.end(), corners.begin(),
                       [this](QPointF point) { return placed(insideImage(point)); });
        if (!corners.empty() && !isSame(corners.back(), corners.front()))
            corners.push_back(corners.front());
        if (placement.determinant() < 0.0) // a mirror turns rings over
            std::reverse(corners.begin(), corners.end());
        return corners;
    }

    void writeArea(const Shape& shape) {
        Polygon polygon;
        for (const Ring& ring : drawing.ringsOf(shape)) {
            Corners corners = cornersOf(ring);
            if (polygon.outer.empty())
                polygon.outer = std::move(corners);
            else
                polygon.holes.push_back(std::move(corners));
        }
        begin(shape.color);
        json << ",\"kind\":\"" << nameOf(shape.kind) << '"';
        writeGeometry({polygon});
    }

    void writeStroke(const Stroke& stroke) {
        Corners line = flattened(drawing.paths.pieces(stroke.path), tolerance);
        std::transform(line.begin(), line.end(), line.begin(),
                       [this](QPointF point) { return placed(insideImage(point)); });
        begin(stroke.color);
        json << ",\"kind\":\"" << lineName(stroke.kind)
             << "\",\"width\":" << stroke.width * drawing.unitsPerPixel()
             << "},\"geometry\":{\"type\":\"LineString\",\"coordinates\":[";
        writePoints(line);
        json << "]}}";
    }

    const Drawing& drawing;
    QTransform placement;
    double tolerance;            ///< in pixels
    double cell;                 ///< of the search for crossings, in units of the file
    std::optional<double> steps; ///< of a unit, to which places are rounded
    TextBuffer json;
    bool isFirst = true;
};

} // namespace

void GeoJsonWriter::write(const Drawing& drawing, QIODevice& device) const {
    const Drawing visible = visibleParts(drawing, options);
    FeatureWriter(visible, options, device).write();
}
