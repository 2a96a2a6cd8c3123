#include "jsonwriter.h"

#include "numbertext.h"

#include <cmath>

namespace {

void appendValue(QByteArray& json, double value) {
    if (std::isnan(value))
        json += "\"nan\"";
    else if (std::isinf(value))
        json += value < 0 ? "\"-inf\"" : "\"inf\"";
    else
        appendNumber(json, value);
}

void appendPoint(QByteArray& json, const OvVector& point) {
    appendValue(json, point.x);
    json += ',';
    appendValue(json, point.y);
}

/// The items 0 .. count - 1, each written by `appendItem(i)`, with commas between them.
template <typename AppendItem>
void appendList(QByteArray& json, qsizetype count, const AppendItem& appendItem) {
    json += '[';
    for (qsizetype i = 0; i < count; ++i) {
        if (i > 0)
            json += ',';
        appendItem(i);
    }
    json += ']';
}

void appendColor(QByteArray& json, const QColor& color) {
    json += '[';
    appendNumber(json, color.red());
    json += ',';
    appendNumber(json, color.green());
    json += ',';
    appendNumber(json, color.blue());
    json += ',';
    appendNumber(json, color.alpha());
    json += ']';
}

void appendSegment(QByteArray& json, const OvPolyline& polyline, qsizetype piece) {
    if (polyline.isVertexAt(piece)) {
        json += "[\"L\",";
        appendPoint(json, polyline.getVertexAt(piece));
    } else {
        const OvSpline curve = polyline.getSplineAt(piece);
        json += "[\"Q\",";
        appendPoint(json, curve.getControlPointAt(1));
        json += ',';
        appendPoint(json, curve.getControlPointAt(2));
    }
    json += ']';
}

void appendPolyline(QByteArray& json, const OvPolyline& polyline, int layer) {
    json += "{\"layer\":";
    appendNumber(json, layer);
    json += ",\"start\":[";
    appendPoint(json, polyline.getStartPoint());
    json += "],\"segments\":";
    appendList(json, polyline.countPieces() - 1,
               [&](qsizetype i) { appendSegment(json, polyline, i + 1); });
    json += '}';
}

} // namespace

QByteArray JsonWriter::write(const Drawing& drawing) const {
    QByteArray json = "{\"width\":";
    appendNumber(json, drawing.size.width());
    json += ",\"height\":";
    appendNumber(json, drawing.size.height());
    json += ",\"palette\":";
    appendList(json, drawing.palette.size(),
               [&](qsizetype i) { appendColor(json, drawing.palette[i]); });
    json += ",\"polylines\":";
    appendList(json, drawing.polylines.size(),
               [&](qsizetype i) { appendPolyline(json, drawing.polylines[i], drawing.layers[i]); });
    json += "}\n";
    return json;
}
