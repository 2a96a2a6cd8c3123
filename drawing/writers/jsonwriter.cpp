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

void appendPoint(TextBuffer& json, QPointF point) {
    appendValue(json, point.x());
    json << ',';
    appendValue(json, point.y());
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

void appendSegment(TextBuffer& json, const PathPiece& piece) {
    if (piece.kind == PieceKind::Line) {
        json << "[\"L\",";
    } else {
        json << "[\"Q\",";
        appendPoint(json, piece.control);
        json << ',';
    }
    appendPoint(json, piece.to);
    json << ']';
}

void appendOutline(TextBuffer& json, const Drawing& drawing, const Shape& shape) {
    const qsizetype path = drawing.uses[drawing.outerRing(shape).firstUse].path;
    const std::vector<PathPiece> pieces = drawing.paths.rawPieces(path);
    json << "{\"layer\":";
    json << shape.color;
    json << ",\"start\":[";
    appendPoint(json, drawing.paths.start(path));
    json << "],\"segments\":";
    appendList(json, static_cast<qsizetype>(pieces.size()),
               [&](qsizetype i) { appendSegment(json, pieces[static_cast<std::size_t>(i)]); });
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
    appendList(json, drawing.shapes.size(),
               [&](qsizetype i) { appendOutline(json, drawing, drawing.shapes[i]); });
    json << "}\n";
}
