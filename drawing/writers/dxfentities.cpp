#include "dxfentities.h"

#include "../geometry/vectors.h"

#include <cmath>

namespace {

/// Degrees from 0 to 360 of a direction, to nine digits, which are the same on every platform.
double degreesOf(QPointF direction) {
    constexpr double DegreesPerRadian = 180.0 / 3.14159265358979323846;
    const double degrees = std::atan2(direction.y(), direction.x()) * DegreesPerRadian;
    const double rounded = std::round(degrees * 1e9) / 1e9;
    return rounded < 0.0 ? rounded + 360.0 : rounded;
}

/// The box around a polyline of lines and arcs.
QRectF polylineBox(const std::vector<BulgeVertex>& vertices, bool isClosed) {
    QRectF box(vertices.front().point, vertices.front().point);
    for (std::size_t i = 0; i + (isClosed ? 0 : 1) < vertices.size(); ++i) {
        const QPointF start = vertices[i].point;
        const QPointF end = vertices[(i + 1) % vertices.size()].point;
        const PathPiece piece = arcPiece(start, end, vertices[i].bulge);
        const QRectF own = boundingBox(std::span(&piece, 1));
        extend(box, own.topLeft());
        extend(box, own.bottomRight());
    }
    return box;
}

/// The cubic curves that a piece is made of, lines and quadratic curves exactly.
std::vector<PathPiece> cubicsOf(const PathPiece& piece) {
    switch (piece.kind) {
    case PieceKind::Cubic:
        return {piece};
    case PieceKind::Arc:
        if (piece.bulge != 0.0)
            return arcAsCubics(piece);
        break;
    case PieceKind::Circle:
    case PieceKind::Ellipse:
        return asCubics(piece);
    default:
        break;
    }
    const QPointF control =
        piece.kind == PieceKind::Quadratic ? piece.control : (piece.from + piece.to) / 2.0;
    return {cubicPiece(piece.from, (piece.from + 2.0 * control) / 3.0,
                       (piece.to + 2.0 * control) / 3.0, piece.to)};
}

} // namespace

QRectF DxfCurve::box() const {
    return form == Form::Polyline ? polylineBox(vertices, isClosed) : boundingBox(pieces);
}

int DxfCurve::entities() const {
    return form == Form::Pieces ? static_cast<int>(pieces.size()) : 1;
}

void DxfEntities::write(const DxfCurve& curve) {
    switch (curve.form) {
    case DxfCurve::Form::Polyline:
        isOld() ? oldPolyline(curve) : polyline(curve);
        break;
    case DxfCurve::Form::Spline:
        cubicSpline(curve);
        break;
    case DxfCurve::Form::Pieces:
        singlePieces(curve);
        break;
    case DxfCurve::Form::Line:
        line(curve.pieces.front(), curve.style);
        break;
    case DxfCurve::Form::Arc:
        arc(curve.pieces.front(), curve.style);
        break;
    case DxfCurve::Form::Circle:
        circle(curve.pieces.front(), curve.style);
        break;
    case DxfCurve::Form::Ellipse:
        ellipse(curve.pieces.front(), curve.style);
        break;
    }
    markHole(curve.style);
}

void DxfEntities::begin(const char* type, const DxfStyle& style) {
    document.beginEntity(type, style.layer);
    if (!style.lineType.isEmpty())
        text.group(6, style.lineType);
    if (style.lineWeight >= 0 && !isOld())
        text.group(370, style.lineWeight);
}

void DxfEntities::subclass(const char* name) {
    if (!isOld())
        text.group(100, name);
}

void DxfEntities::markHole(const DxfStyle& style) {
    if (!style.isHole || isOld())
        return;
    text.group(1001, DxfDocument::Application);
    text.group(1000, "HOLE");
}

void DxfEntities::oldPolyline(const DxfCurve& curve) {
    begin("POLYLINE", curve.style);
    text.group(66, 1);
    text.point3(10, {});
    text.group(70, curve.isClosed ? 1 : 0);
    if (curve.style.width > 0.0) {
        text.group(40, curve.style.width);
        text.group(41, curve.style.width);
    }
    if (curve.style.isHole) {
        text.group(1001, DxfDocument::Application);
        text.group(1000, "HOLE");
    }
    for (const BulgeVertex& vertex : curve.vertices) {
        document.beginEntity("VERTEX", curve.style.layer);
        text.point3(10, vertex.point);
        if (vertex.bulge != 0.0)
            text.group(42, vertex.bulge);
    }
    document.beginEntity("SEQEND", curve.style.layer);
}

void DxfEntities::polyline(const DxfCurve& curve) {
    begin("LWPOLYLINE", curve.style);
    text.group(100, "AcDbPolyline");
    text.group(90, static_cast<int>(curve.vertices.size()));
    text.group(70, curve.isClosed ? 1 : 0);
    if (curve.style.width > 0.0)
        text.group(43, curve.style.width);
    for (const BulgeVertex& vertex : curve.vertices) {
        text.point(10, vertex.point);
        if (vertex.bulge != 0.0)
            text.group(42, vertex.bulge);
    }
}

void DxfEntities::line(const PathPiece& piece, const DxfStyle& style) {
    begin("LINE", style);
    subclass("AcDbLine");
    text.point3(10, piece.from);
    text.point3(11, piece.to);
}

void DxfEntities::arc(const PathPiece& piece, const DxfStyle& style) {
    const ArcCircle circle = arcCircle(piece.from, piece.to, piece.bulge);
    const double from = degreesOf(piece.from - circle.centre);
    const double to = degreesOf(piece.to - circle.centre);
    begin("ARC", style);
    subclass("AcDbCircle");
    text.point3(10, circle.centre);
    text.group(40, circle.radius);
    subclass("AcDbArc");
    // Arcs run counter-clockwise in the file.
    text.group(50, piece.bulge > 0.0 ? from : to);
    text.group(51, piece.bulge > 0.0 ? to : from);
}

void DxfEntities::circle(const PathPiece& piece, const DxfStyle& style) {
    begin("CIRCLE", style);
    subclass("AcDbCircle");
    text.point3(10, piece.control);
    text.group(40, piece.radius);
    if (isOld() && style.isHole) {
        text.group(1001, DxfDocument::Application);
        text.group(1000, "HOLE");
    }
}

void DxfEntities::ellipse(const PathPiece& piece, const DxfStyle& style) {
    constexpr double WholeTurn = 6.283185307179586;
    QPointF axis = piece.control2;
    double across = piece.radius;
    const double size = length(axis);
    // The ratio is one of the shorter to the longer.
    if (across > size) {
        axis = QPointF(-axis.y(), axis.x()) * (across / size);
        across = size;
    }
    begin("ELLIPSE", style);
    text.group(100, "AcDbEllipse");
    text.point3(10, piece.control);
    text.point3(11, axis);
    text.point(210, {});
    text.group(230, 1.0);
    text.group(40, across / length(axis));
    text.group(41, 0.0);
    text.group(42, WholeTurn);
}

void DxfEntities::beginSpline(const DxfStyle& style, int degree, int knots, int points) {
    constexpr int Planar = 8;
    begin("SPLINE", style);
    text.group(100, "AcDbSpline");
    text.point(210, {});
    text.group(230, 1.0);
    text.group(70, Planar);
    text.group(71, degree);
    text.group(72, knots);
    text.group(73, points);
    text.group(74, 0);
}

/// All pieces as one cubic spline, each curve with its three points and a knot of as many at its
/// end.
void DxfEntities::cubicSpline(const DxfCurve& curve) {
    std::vector<PathPiece> cubics;
    for (const PathPiece& piece : curve.pieces) {
        const std::vector<PathPiece> own = cubicsOf(piece);
        cubics.insert(cubics.end(), own.begin(), own.end());
    }
    const auto count = static_cast<int>(cubics.size());
    beginSpline(curve.style, 3, 3 * count + 5, 3 * count + 1);
    for (int knot = 0; knot <= count; ++knot) {
        const int repeated = knot == 0 || knot == count ? 4 : 3;
        for (int i = 0; i < repeated; ++i)
            text.group(40, static_cast<double>(knot));
    }
    text.point3(10, cubics.front().from);
    for (const PathPiece& cubic : cubics) {
        for (const QPointF point : {cubic.control, cubic.control2, cubic.to})
            text.point3(10, point);
    }
}

void DxfEntities::singlePieces(const DxfCurve& curve) {
    for (const PathPiece& piece : curve.pieces) {
        if (piece.kind != PieceKind::Quadratic) {
            line(piece, curve.style);
            continue;
        }
        beginSpline(curve.style, 2, 6, 3);
        for (const double knot : {0.0, 0.0, 0.0, 1.0, 1.0, 1.0})
            text.group(40, knot);
        for (const QPointF point : {piece.from, piece.control, piece.to})
            text.point3(10, point);
    }
}

void DxfEntities::hatch(const QByteArray& layer,
                        const std::vector<std::vector<BulgeVertex>>& rings) {
    document.beginEntity("HATCH", layer);
    text.group(100, "AcDbHatch");
    text.point3(10, {});
    text.point(210, {});
    text.group(230, 1.0);
    text.group(2, "SOLID");
    text.group(70, 1);
    text.group(71, 0);
    text.group(91, static_cast<int>(rings.size()));
    constexpr int External = 1;
    constexpr int Polyline = 2;
    constexpr int Outermost = 16;
    bool isOuter = true;
    for (const std::vector<BulgeVertex>& ring : rings) {
        text.group(92, Polyline + (isOuter ? External : Outermost));
        isOuter = false;
        text.group(72, 1);
        text.group(73, 1);
        text.group(93, static_cast<int>(ring.size()));
        for (const BulgeVertex& vertex : ring) {
            text.point(10, vertex.point);
            text.group(42, vertex.bulge);
        }
        text.group(97, 0);
    }
    text.group(75, 0);
    text.group(76, 1);
    text.group(98, 1);
    text.point(10, rings.front().front().point);
}
