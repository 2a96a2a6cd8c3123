#include "jsonwriter.h"

#include "textbuffer.h"

#include <cmath>

namespace {

void appendValue(TextBuffer& json, double value) {
    if (std::isnan(value))
        json << "\"nan\"";
    else if (std::isinf(value))
        json << (value < 0 ? "\"-inf\"" : "\"inf\"");
    else
        json << value;
}

void appendPoint(TextBuffer& json, const OvVector& point) {
    appendValue(json, point.x);
    json << ',';
    appendValue(json, point.y);
}

/// The items 0 .. count - 1, each written by `appendItem(i)`, with commas between them.
template <typename AppendItem>
void appendList(TextBuffer& json, qsizetype count, const AppendItem& appendItem) {
    json << '[';
    for (qsizetype i = 0; i < count; ++i) {
        if (i > 0)
            json << ',';
        appendItem(i);
    }
    json << ']';
}

void appendColor(TextBuffer& json, const QColor& color) {
    json << '[';
    json << color.red();
    json << ',';
    json << color.green();
    json << ',';
    json << color.blue();
    json << ',';
    json << color.alpha();
    json << ']';
}

void appendSegment(TextBuffer& json, const OvPolyline& polyline, qsizetype piece) {
    if (polyline.isVertexAt(piece)) {
        json << "[\"L\",";
        appendPoint(json, polyline.getVertexAt(piece));
    } else {
        const OvSpline curve = polyline.getSplineAt(piece);
        json << "[\"Q\",";
        appendPoint(json, curve.getControlPointAt(1));
        json << ',';
        appendPoint(json, curve.getControlPointAt(2));
    }
    json << ']';
}

void appendPolyline(TextBuffer& json, const OvPolyline& polyline, int layer) {
    json << "{\"layer\":";
    json << layer;
    json << ",\"start\":[";
    appendPoint(json, polyline.getStartPoint());
    json << "],\"segments\":";
    appendList(json, polyline.countPieces() - 1,
               [&](qsizetype i) { appendSegment(json, polyline, i + 1); });
    json << '}';
}

} // namespace

void JsonWriter::write(const Drawing& drawing, QIODevice& device) const {
    TextBuffer json(device);
    json << "{\"width\":";
    json << drawing.size.width();
    json << ",\"height\":";
    json << drawing.size.height();
    json << ",\"palette\":";
    appendList(json, drawing.palette.size(),
               [&](qsizetype i) { appendColor(json, drawing.palette[i]); });
    json << ",\"polylines\":";
    appendList(json, drawing.polylines.size(),
               [&](qsizetype i) { appendPolyline(json, drawing.polylines[i], drawing.layers[i]); });
    json << "}\n";
}
