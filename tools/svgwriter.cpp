#include "svgwriter.h"

#include "textbuffer.h"

#include <cmath>

namespace {

/// Writes path data, whose y axis points down, from drawing coordinates.
class PathData {
public:
    PathData(TextBuffer& svg, double height) : svg(svg), height(height) {
    }

    void append(const OvPolyline& polyline) {
        command('M', {polyline.getStartPoint()});
        for (qsizetype i = 1; i < polyline.countPieces(); ++i) {
            if (polyline.isVertexAt(i)) {
                command('L', {polyline.getVertexAt(i)});
                continue;
            }
            const OvSpline curve = polyline.getSplineAt(i);
            const OvVector control = curve.getControlPointAt(1);
            // Strange tolerances can give a curve without a control point: its chord stays.
            if (std::isfinite(control.x) && std::isfinite(control.y))
                command('Q', {control, curve.getControlPointAt(2)});
            else
                command('L', {curve.getControlPointAt(2)});
        }
        svg << 'Z';
    }

private:
    void command(char letter, std::initializer_list<OvVector> points) {
        svg << letter;
        bool first = true;
        for (const OvVector& point : points) {
            if (!first)
                svg << ' ';
            first = false;
            svg << point.x << ' ' << height - point.y;
        }
    }

    TextBuffer& svg;
    double height;
};

QByteArray fillAttributes(const QColor& color) {
    QByteArray attributes = "fill=\"" + color.name(QColor::HexRgb).toLatin1() + '"';
    if (color.alpha() != 255) {
        const double opacity = std::round(color.alpha() / 255.0 * 10000.0) / 10000.0;
        attributes += " fill-opacity=\"" + QByteArray::number(opacity) + '"';
    }
    return attributes;
}

} // namespace

void SvgWriter::write(const Drawing& drawing, QIODevice& device) const {
    TextBuffer svg(device);
    const int width = drawing.size.width();
    const int height = drawing.size.height();
    svg << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
           "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\""
        << width << "\" height=\"" << height << "\" viewBox=\"0 0 " << width << ' ' << height
        << "\">\n";
    QList<QByteArray> fills;
    for (const QColor& color : drawing.palette)
        fills.append(fillAttributes(color));
    for (qsizetype i = 0; i < drawing.polylines.size(); ++i) {
        svg << "<path " << fills[drawing.layers[i]] << " d=\"";
        PathData(svg, height).append(drawing.polylines[i]);
        svg << "\"/>\n";
    }
    svg << "</svg>\n";
}
