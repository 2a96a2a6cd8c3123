#include "geojsonwriter.h"

#include "../geometry/planarorder.h"
#include "../geometry/polygons.h"
#include "../geometry/vectors.h"
#include "geojsonhead.h"
#include "polygonring.h"
#include "sharedlines.h"
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
          cell(UsualEdge * drawing.unitsPerPixel()), steps(stepsOf(options)),
          lines(drawing, {options.deviation, steps}), json(device) {
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
    static std::optional<double> stepsOf(const WriterOptions& options) {
        if (!options.precision)
            return std::nullopt;
        return std::pow(10.0, *options.precision);
    }

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
        return {rounded(place.x()), rounded(place.y())};
    }
    /// The nearest number of so few digits, which is written without further ones.
    double rounded(double value) const {
        return steps ? std::round(value * *steps) / *steps : value;
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

    /// The corners of a ring. Both areas beside a path have the same ones.
    Corners cornersOf(const Ring& ring) const {
        Corners corners;
        for (qsizetype i = ring.firstUse; i < ring.firstUse + ring.count; ++i) {
            const PathUse& use = drawing.uses[i];
            Corners own = lines.line(use.path);
            if (use.backwards)
                std::reverse(own.begin(), own.end());
            corners.insert(corners.end(), own.begin() + (corners.empty() ? 0 : 1), own.end());
        }
        if (!corners.empty() && !isSame(corners.back(), corners.front()))
            corners.push_back(corners.front());
        if (placement.determinant() < 0.0) // a mirror turns rings over
            std::reverse(corners.begin(), corners.end());
        return corners;
    }

    /// Whether rings come to a place twice, as around pixels that touch in a corner.
    static bool touch(const std::vector<Corners>& rings) {
        Corners corners;
        for (const Corners& ring : rings)
            corners.insert(corners.end(), ring.begin() + 1, ring.end());
        std::sort(corners.begin(), corners.end(), ByPlace());
        return std::adjacent_find(corners.begin(), corners.end(), isSame) != corners.end();
    }

    void writeArea(const Shape& shape) {
        std::vector<Corners> rings;
        for (const Ring& ring : drawing.ringsOf(shape))
            rings.push_back(cornersOf(ring));
        std::vector<Polygon> polygons;
        if (touch(rings))
            polygons = polygonsOf(rings, cell);
        if (polygons.empty())
            polygons.push_back({rings.front(), {rings.begin() + 1, rings.end()}});
        begin(shape.color);
        json << ",\"kind\":\"" << nameOf(shape.kind) << '"';
        writeGeometry(polygons);
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
    SharedLines lines;
    TextBuffer json;
    bool isFirst = true;
};

} // namespace

void GeoJsonWriter::write(const Drawing& drawing, QIODevice& device) const {
    const Drawing visible = visibleParts(drawing, options);
    FeatureWriter(visible, options, device).write();
}
