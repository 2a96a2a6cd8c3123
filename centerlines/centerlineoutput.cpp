#include "centerlineoutput.h"

#include <cmath>

namespace ovtrace {
namespace {

using Shape = OvCenterlineStroke::Shape;

/// Arcs that stand for a quarter of an ellipse.
constexpr int ArcsOfQuarter = 8;

/// An arc through both ends, as close to the carrier in its middle as can be.
void writeArc(const Stroke& stroke, double height, OvCenterlineStroke& out) {
    const Carrier& c = stroke.carrier;
    const Point from = stroke.start();
    const Point to = stroke.finish();
    const double bulge = bulgeAround(from, to, c.at, c.turn);
    const Piece arc = arcPiece(from, to, bulge);
    out.bulge = -bulge; // y turns up
    if (bulge == 0.0) {
        out.shape = Shape::Line;
        return;
    }
    const Circle circle = circleOf(arc);
    out.shape = Shape::Arc;
    out.center = {circle.centre.x, height - circle.centre.y};
    out.radius = circle.radius;
}

OvCenterlineStroke strokeOf(const Stroke& stroke, double height) {
    OvCenterlineStroke out;
    const auto turned = [height](Point p) { return OvCenterlinePoint{p.x, height - p.y}; };
    out.width = stroke.width;
    if (stroke.ellipse) {
        out.shape = Shape::Ellipse;
        out.center = turned(stroke.ellipse->centre);
        out.radius = stroke.ellipse->major;
        out.minorRadius = stroke.ellipse->minor;
        out.axis = {stroke.ellipse->axis.x, -stroke.ellipse->axis.y};
        return out;
    }
    if (stroke.closed) {
        out.shape = Shape::Circle;
        out.center = turned(stroke.carrier.at);
        out.radius = stroke.carrier.radius;
        return out;
    }
    out.start = turned(stroke.start());
    out.end = turned(stroke.finish());
    out.startNode = stroke.ends[0].node;
    out.endNode = stroke.ends[1].node;
    if (!stroke.carrier.isLine())
        writeArc(stroke, height, out);
    return out;
}

OvCenterlineStroke::Kind kindOf(const Stroke& stroke) {
    if (!stroke.dashes.empty())
        return OvCenterlineStroke::Kind::Dashed;
    return stroke.hatch ? OvCenterlineStroke::Kind::Hatch : OvCenterlineStroke::Kind::Line;
}

OvVector vectorOf(Point p) {
    return {p.x, p.y, 0.0, true};
}

OvVector vectorOf(OvCenterlinePoint p) {
    return vectorOf(Point{p.x, p.y});
}

/// The bulge of the arc through three points of a curve.
double bulgeThrough(Point from, Point by, Point to) {
    const Point a = by - from;
    const Point b = to - from;
    const double area = 2.0 * cross(a, b);
    if (area == 0.0)
        return 0.0;
    const Point centre =
        from + turnedQuarter(a * lengthSquared(b) - b * lengthSquared(a)) * (1.0 / area);
    return bulgeAround(from, to, centre, area);
}

/// Arcs that follow an ellipse.
void appendEllipse(const OvCenterlineStroke& stroke, OvPolyline& polyline) {
    const Ellipse ellipse{{stroke.center.x, stroke.center.y},
                          {stroke.axis.x, stroke.axis.y},
                          stroke.radius,
                          stroke.minorRadius};
    const auto at = [&](int half) {
        const int quarter = half / (2 * ArcsOfQuarter) % 4;
        return ellipse.at(quarter, half % (2 * ArcsOfQuarter) / (2.0 * ArcsOfQuarter));
    };
    const double w = stroke.width;
    for (int k = 0; k < 4 * ArcsOfQuarter; ++k)
        polyline.appendVertex(vectorOf(at(2 * k)),
                              bulgeThrough(at(2 * k), at(2 * k + 1), at(2 * k + 2)), w, w);
    polyline.appendVertex(vectorOf(at(0)), 0.0, w, w);
}

void appendStroke(const OvCenterlineStroke& stroke, OvPolyline& polyline) {
    const double w = stroke.width;
    switch (stroke.shape) {
    case Shape::Circle: {
        const OvCenterlinePoint a{stroke.center.x - stroke.radius, stroke.center.y};
        const OvCenterlinePoint b{stroke.center.x + stroke.radius, stroke.center.y};
        polyline.appendVertex(vectorOf(a), 1.0, w, w);
        polyline.appendVertex(vectorOf(b), 1.0, w, w);
        polyline.appendVertex(vectorOf(a), 0.0, w, w);
        break;
    }
    case Shape::Ellipse:
        appendEllipse(stroke, polyline);
        break;
    case Shape::Polyline:
        for (const OvCenterlinePoint& p : stroke.points)
            polyline.appendVertex(vectorOf(p), 0.0, w, w);
        break;
    default:
        polyline.appendVertex(vectorOf(stroke.start),
                              stroke.shape == Shape::Arc ? stroke.bulge : 0.0, w, w);
        polyline.appendVertex(vectorOf(stroke.end), 0.0, w, w);
        break;
    }
}

} // namespace

void dropImpossible(std::vector<Stroke>& strokes, int width, int height) {
    const auto isInside = [&](Point p) {
        return isFinite(p) && p.x >= 0.0 && p.y >= 0.0 && p.x <= width && p.y <= height;
    };
    for (Stroke& stroke : strokes) {
        const bool thick = stroke.width > 0.0 && std::isfinite(stroke.width);
        const bool there = stroke.closed
                               ? isInside(stroke.carrier.at) && stroke.carrier.radius > 0.0 &&
                                     std::isfinite(stroke.carrier.radius)
                               : isInside(stroke.start()) && isInside(stroke.finish()) &&
                                     distance(stroke.start(), stroke.finish()) > 1e-3;
        stroke.dropped = stroke.dropped || !thick || !there;
    }
}

void writeCenterlines(const Found& found, OvCenterlines& result) {
    const double height = result.height;
    for (const Point& node : found.nodes)
        result.nodes.append({node.x, height - node.y});
    for (std::size_t i = 0; i < found.strokes.size(); ++i) {
        const Stroke& stroke = found.strokes[i];
        if (stroke.dropped)
            continue;
        OvCenterlineStroke out = strokeOf(stroke, height);
        out.kind = kindOf(stroke);
        out.widthClass = stroke.widthClass;
        out.color = found.colors.ofStroke[i];
        for (const double length : stroke.dashes)
            out.dashes.append(length);
        result.strokes.append(out);
    }
    for (std::size_t i = 0; i < found.areas.size(); ++i) {
        const InkArea& area = found.areas[i];
        OvCenterlineArea out;
        out.kind = area.kind == InkMask::Text ? OvCenterlineArea::Kind::Text
                                              : OvCenterlineArea::Kind::Solid;
        out.color = found.colors.ofArea[i];
        for (const std::vector<Point>& ring : area.rings) {
            QList<OvCenterlinePoint> points;
            for (const Point& p : ring)
                points.append({p.x, height - p.y});
            out.rings.append(points);
        }
        result.areas.append(out);
    }
    for (const double width : found.widths)
        result.widths.append(width);
    for (const QRgb color : found.colors.colors)
        result.colors.append(color);
}

QList<OvPolyline> polylinesOf(const OvCenterlines& centerlines) {
    QList<OvPolyline> polylines;
    for (const OvCenterlineStroke& stroke : centerlines.strokes) {
        OvPolyline polyline;
        appendStroke(stroke, polyline);
        polylines.append(polyline);
    }
    for (const OvCenterlineArea& area : centerlines.areas)
        for (const QList<OvCenterlinePoint>& ring : area.rings) {
            OvPolyline polyline;
            for (const OvCenterlinePoint& p : ring)
                polyline.appendVertex(vectorOf(p), 0.0, 0.0, 0.0);
            polyline.appendVertex(vectorOf(ring.front()), 0.0, 0.0, 0.0);
            polylines.append(polyline);
        }
    return polylines;
}

} // namespace ovtrace
