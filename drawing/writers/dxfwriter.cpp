#include "dxfwriter.h"

#include "../placement.h"
#include "dxfentities.h"
#include "dxflayers.h"
#include "visible.h"

#include <algorithm>
#include <stdexcept>

namespace {

std::vector<BulgeVertex> lineVertices(std::span<const PathPiece> outline, double deviation) {
    std::vector<BulgeVertex> vertices;
    for (const QPointF& point : flattened(outline, deviation)) {
        if (vertices.empty() || vertices.back().point != point)
            vertices.push_back({point, 0.0});
    }
    // The first point again.
    if (vertices.size() > 1 && vertices.back().point == vertices.front().point)
        vertices.pop_back();
    return vertices;
}

bool hasCubics(const std::vector<PathPiece>& pieces) {
    return std::any_of(pieces.begin(), pieces.end(),
                       [](const PathPiece& piece) { return piece.kind == PieceKind::Cubic; });
}

class DrawingWriter {
public:
    DrawingWriter(const Drawing& drawing, const WriterOptions& options, QIODevice& device)
        : drawing(drawing), options(options), layers(drawing), text(device) {
        if (drawing.method == Method::Outlines)
            addOutlines();
        else if (drawing.method == Method::Regions && options.dxfEdges == DxfEdges::Shared)
            addBoundaries();
        else
            addRings();
        if (options.dxfHatch && options.dxfVersion != DxfVersion::R12)
            addHatches();
        for (const Stroke& stroke : drawing.strokes)
            addStroke(stroke);
    }

    void write() {
        DxfContents contents{extents(), countEntities(), layers.all(), layers.lineTypes(scale()),
                             hasHoles()};
        DxfDocument document(text, options.dxfVersion, drawing.unit, contents);
        DxfEntities entities(text, document, options.dxfVersion);
        document.begin();
        for (const Hatch& hatch : hatches)
            entities.hatch(hatch.layer, hatch.rings);
        for (const DxfCurve& curve : curves)
            entities.write(curve);
        document.end();
    }

private:
    struct Hatch {
        QByteArray layer;
        std::vector<std::vector<BulgeVertex>> rings;
    };

    double scale() const {
        return drawing.unitsPerPixel();
    }
    double deviation() const {
        return options.deviation * scale();
    }

    std::vector<PathPiece> scaled(const std::vector<PathPiece>& pieces) const {
        return placed(pieces, drawing.placement());
    }

    std::vector<BulgeVertex> verticesOf(std::span<const PathPiece> pieces) const {
        return options.dxfCurves == DxfCurves::Lines ? lineVertices(pieces, deviation())
                                                     : toBulges(pieces, deviation());
    }

    void addOutlines() {
        for (const Shape& shape : drawing.shapes) {
            DxfCurve curve;
            curve.style.layer = layers.ofShape(shape);
            curve.pieces = scaled(drawing.piecesOf(drawing.outerRing(shape)));
            if (options.dxfCurves == DxfCurves::Spline)
                curve.form = DxfCurve::Form::Spline;
            else if (options.dxfCurves == DxfCurves::Quadratic)
                curve.form = DxfCurve::Form::Pieces;
            else
                curve.vertices = verticesOf(curve.pieces);
            if (curve.form == DxfCurve::Form::Polyline)
                curve.pieces.clear();
            if (!curve.vertices.empty() || !curve.pieces.empty())
                curves.push_back(std::move(curve));
        }
    }

    void addRings() {
        for (const Shape& shape : drawing.shapes) {
            DxfStyle style;
            style.layer = layers.ofShape(shape);
            for (const Ring& ring : drawing.ringsOf(shape)) {
                addCurve(drawing.piecesOf(ring), true, style);
                style.isHole = true;
            }
        }
    }

    /// Every boundary once, on the layer of the region that it encloses: the last of its two.
    void addBoundaries() {
        QList<bool> isAdded(drawing.paths.size(), false);
        for (qsizetype i = drawing.shapes.size() - 1; i >= 0; --i) {
            const Shape& shape = drawing.shapes[i];
            DxfStyle style;
            style.layer = layers.ofShape(shape);
            for (const Ring& ring : drawing.ringsOf(shape)) {
                for (qsizetype k = ring.firstUse; k < ring.firstUse + ring.count; ++k) {
                    const qsizetype path = drawing.uses[k].path;
                    if (!isAdded[path])
                        addCurve(drawing.paths.pieces(path), false, style);
                    isAdded[path] = true;
                }
            }
        }
    }

    void addStroke(const Stroke& stroke) {
        DxfStyle style;
        style.layer = layers.ofStroke(stroke);
        style.lineType = layers.lineTypeOf(stroke);
        style.width = stroke.width * scale();
        style.lineWeight = dxfLineWeight(stroke.width * paperPixel());
        addCurve(drawing.paths.pieces(stroke.path), false, style);
    }

    /// Millimetres a pixel: as asked for, as the image's file says, or as line drawings are
    /// scanned.
    double paperPixel() const {
        constexpr double ScannedPixel = 25.4 / 300.0;
        return drawing.pixelMillimetres.value_or(
            drawing.filePixelMillimetres.value_or(ScannedPixel));
    }

    /// The entity that says it best: a circle, a line or an arc where it is one.
    void addCurve(const std::vector<PathPiece>& pieces, bool isRing, const DxfStyle& style) {
        if (pieces.empty())
            return;
        DxfCurve curve;
        curve.style = style;
        curve.pieces = scaled(pieces);
        const PathPiece& first = curve.pieces.front();
        curve.isClosed = isRing || curve.pieces.back().to == first.from;
        if (first.kind == PieceKind::Circle)
            curve.form = DxfCurve::Form::Circle;
        else if (first.kind == PieceKind::Ellipse && options.dxfVersion != DxfVersion::R12)
            curve.form = DxfCurve::Form::Ellipse;
        else if (curve.pieces.size() == 1 && first.kind == PieceKind::Line)
            curve.form = DxfCurve::Form::Line;
        else if (curve.pieces.size() == 1 && first.kind == PieceKind::Arc && first.bulge != 0.0 &&
                 !curve.isClosed)
            curve.form = DxfCurve::Form::Arc;
        else if (hasCubics(curve.pieces) && !asPolylines(options.dxfCurves))
            curve.form = DxfCurve::Form::Spline;
        else
            curve.vertices = verticesOf(curve.pieces);
        if (curve.form != DxfCurve::Form::Polyline || curve.vertices.size() > 1)
            curves.push_back(std::move(curve));
    }

    void addHatches() {
        for (const Shape& shape : drawing.shapes) {
            Hatch hatch{layers.ofShape(shape), {}};
            for (const Ring& ring : drawing.ringsOf(shape))
                hatch.rings.push_back(toBulges(scaled(drawing.piecesOf(ring)), deviation()));
            const bool isSound = std::all_of(hatch.rings.begin(), hatch.rings.end(),
                                             [](const auto& ring) { return ring.size() > 1; });
            if (isSound)
                hatches.push_back(std::move(hatch));
        }
    }

    QRectF extents() const {
        QRectF box;
        bool isFirst = true;
        for (const DxfCurve& curve : curves) {
            const QRectF own = curve.box();
            if (isFirst)
                box = own;
            extend(box, own.topLeft());
            extend(box, own.bottomRight());
            isFirst = false;
        }
        return box;
    }

    int countEntities() const {
        auto count = static_cast<int>(hatches.size());
        for (const DxfCurve& curve : curves)
            count += curve.entities();
        return count;
    }

    bool hasHoles() const {
        return std::any_of(curves.begin(), curves.end(),
                           [](const DxfCurve& curve) { return curve.style.isHole; });
    }

    const Drawing& drawing;
    const WriterOptions& options;
    DxfLayers layers;
    DxfText text;
    std::vector<DxfCurve> curves;
    std::vector<Hatch> hatches;
};

} // namespace

void DxfWriter::write(const Drawing& drawing, QIODevice& device) const {
    if (options.dxfVersion == DxfVersion::R12 && !asPolylines(options.dxfCurves))
        throw std::runtime_error("DXF R12 has no splines; choose arcs or lines for the curves");
    const Drawing visible = visibleParts(drawing, options);
    DrawingWriter(visible, options, device).write();
}
