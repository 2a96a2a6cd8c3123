#include "dxfwriter.h"

#include "../geometry/biarcs.h"
#include "../geometry/vectors.h"
#include "dxfdocument.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>

namespace {

/// An outline in the form in which it is written.
struct Curve {
    QByteArray layer;
    std::vector<BulgeVertex> vertices; ///< as a polyline
    std::vector<PathPiece> outline;    ///< as splines
};

std::vector<BulgeVertex> lineVertices(std::span<const PathPiece> outline, double deviation) {
    std::vector<BulgeVertex> vertices;
    for (const QPointF& point : flattenedRing(outline, deviation)) {
        if (vertices.empty() || vertices.back().point != point)
            vertices.push_back({point, 0.0});
    }
    vertices.pop_back(); // the first point again
    return vertices;
}

/// The box around closed polylines of lines and arcs.
QRectF boundingBox(const std::vector<BulgeVertex>& vertices) {
    QRectF box(vertices.front().point, vertices.front().point);
    for (std::size_t i = 0; i < vertices.size(); ++i) {
        const QPointF start = vertices[i].point;
        const QPointF end = vertices[(i + 1) % vertices.size()].point;
        const double bulge = vertices[i].bulge;
        extend(box, end);
        if (bulge == 0.0)
            continue;
        const ArcCircle circle = arcCircle(start, end, bulge);
        for (const QPointF direction :
             {QPointF(1, 0), QPointF(0, 1), QPointF(-1, 0), QPointF(0, -1)}) {
            // An arc below a half turn lies on the far side of its chord as its centre sees it.
            const QPointF point = circle.centre + direction * circle.radius;
            if (cross(end - start, point - start) * bulge < 0.0)
                extend(box, point);
        }
    }
    return box;
}

class DrawingWriter {
public:
    DrawingWriter(const Drawing& drawing, const WriterOptions& options, QIODevice& device)
        : drawing(drawing), options(options), text(device) {
        for (qsizetype k = 0; k < drawing.palette.size(); ++k) {
            const QColor& color = drawing.palette[k];
            layers.append({"COLOR_" + QByteArray::number(k) + '_' +
                               color.name(QColor::HexRgb).mid(1).toUpper().toLatin1(),
                           color});
        }
        makeShapes();
    }

    void write() {
        DxfDocument document(text, options.dxfVersion, drawing.unit, extents(), countEntities(),
                             layers);
        document.begin();
        for (const Curve& shape : shapes) {
            if (options.dxfVersion == DxfVersion::R12)
                writeOldPolyline(document, shape);
            else if (asPolylines(options.dxfCurves))
                writePolyline(document, shape);
            else if (options.dxfCurves == DxfCurves::Spline)
                writeCubicSpline(document, shape);
            else
                writePieces(document, shape);
        }
        document.end();
    }

private:
    void makeShapes() {
        const double scale = drawing.unitsPerPixel();
        const double deviation = options.deviation * scale;
        for (const Shape& each : drawing.shapes) {
            std::vector<PathPiece> outline = drawing.piecesOf(drawing.outerRing(each));
            for (PathPiece& piece : outline)
                piece = transformed(piece, scale, false, QPointF());
            Curve shape{layers[each.color].name, {}, {}};
            if (options.dxfCurves == DxfCurves::Arcs)
                shape.vertices = toBulges(outline, deviation);
            else if (options.dxfCurves == DxfCurves::Lines)
                shape.vertices = lineVertices(outline, deviation);
            else
                shape.outline = std::move(outline);
            if (!asPolylines(options.dxfCurves) || !shape.vertices.empty())
                shapes.push_back(std::move(shape));
        }
    }

    QRectF extents() const {
        QRectF box;
        bool isFirst = true;
        for (const Curve& shape : shapes) {
            const QRectF own =
                shape.vertices.empty() ? ::boundingBox(shape.outline) : boundingBox(shape.vertices);
            box = isFirst ? own
                          : QRectF(QPointF(std::min(box.left(), own.left()),
                                           std::min(box.top(), own.top())),
                                   QPointF(std::max(box.right(), own.right()),
                                           std::max(box.bottom(), own.bottom())));
            isFirst = false;
        }
        return box;
    }

    int countEntities() const {
        std::size_t count = 0;
        for (const Curve& shape : shapes)
            count += options.dxfCurves == DxfCurves::Quadratic ? shape.outline.size() : 1;
        return static_cast<int>(count);
    }

    void writeOldPolyline(DxfDocument& document, const Curve& shape) {
        document.beginEntity("POLYLINE", shape.layer);
        text.group(66, 1);
        text.point3(10, {});
        text.group(70, 1);
        for (const BulgeVertex& vertex : shape.vertices) {
            document.beginEntity("VERTEX", shape.layer);
            text.point3(10, vertex.point);
            if (vertex.bulge != 0.0)
                text.group(42, vertex.bulge);
        }
        document.beginEntity("SEQEND", shape.layer);
    }

    void writePolyline(DxfDocument& document, const Curve& shape) {
        document.beginEntity("LWPOLYLINE", shape.layer);
        text.group(100, "AcDbPolyline");
        text.group(90, static_cast<int>(shape.vertices.size()));
        text.group(70, 1);
        for (const BulgeVertex& vertex : shape.vertices) {
            text.point(10, vertex.point);
            if (vertex.bulge != 0.0)
                text.group(42, vertex.bulge);
        }
    }

    void beginSpline(DxfDocument& document, const QByteArray& layer, int degree, int knots,
                     int points) {
        constexpr int Planar = 8;
        document.beginEntity("SPLINE", layer);
        text.group(100, "AcDbSpline");
        text.point(210, {});
        text.group(230, 1.0);
        text.group(70, Planar);
        text.group(71, degree);
        text.group(72, knots);
        text.group(73, points);
        text.group(74, 0);
    }

    /// Lines and quadratic curves as one cubic spline, each with its three points and a knot of
    /// as many at its end.
    void writeCubicSpline(DxfDocument& document, const Curve& shape) {
        const auto pieces = static_cast<int>(shape.outline.size());
        beginSpline(document, shape.layer, 3, 3 * pieces + 5, 3 * pieces + 1);
        for (int knot = 0; knot <= pieces; ++knot) {
            const int repeated = knot == 0 || knot == pieces ? 4 : 3;
            for (int i = 0; i < repeated; ++i)
                text.group(40, static_cast<double>(knot));
        }
        text.point3(10, shape.outline.front().from);
        for (const PathPiece& piece : shape.outline) {
            const QPointF control =
                piece.kind == PieceKind::Line ? (piece.from + piece.to) / 2.0 : piece.control;
            text.point3(10, (piece.from + 2.0 * control) / 3.0);
            text.point3(10, (piece.to + 2.0 * control) / 3.0);
            text.point3(10, piece.to);
        }
    }

    void writePieces(DxfDocument& document, const Curve& shape) {
        for (const PathPiece& piece : shape.outline) {
            if (piece.kind == PieceKind::Quadratic) {
                beginSpline(document, shape.layer, 2, 6, 3);
                for (const double knot : {0.0, 0.0, 0.0, 1.0, 1.0, 1.0})
                    text.group(40, knot);
                for (const QPointF point : {piece.from, piece.control, piece.to})
                    text.point3(10, point);
            } else {
                document.beginEntity("LINE", shape.layer);
                text.group(100, "AcDbLine");
                text.point3(10, piece.from);
                text.point3(11, piece.to);
            }
        }
    }

    const Drawing& drawing;
    const WriterOptions& options;
    DxfText text;
    QList<DxfLayer> layers;
    std::vector<Curve> shapes;
};

} // namespace

void DxfWriter::write(const Drawing& drawing, QIODevice& device) const {
    if (options.dxfVersion == DxfVersion::R12 && !asPolylines(options.dxfCurves))
        throw std::runtime_error("DXF R12 has no splines; choose arcs or lines for the curves");
    DrawingWriter(drawing, options, device).write();
}
