#include "jsonwriter.h"

#include "textbuffer.h"
#include "visible.h"

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

/// A piece of a map or a stroke: its letter, what its form needs and its end.
void appendPiece(TextBuffer& json, const PathPiece& piece) {
    switch (piece.kind) {
    case PieceKind::Line:
        json << "[\"L\",";
        break;
    case PieceKind::Arc:
        json << "[\"A\",";
        appendValue(json, piece.bulge);
        json << ',';
        break;
    case PieceKind::Quadratic:
        json << "[\"Q\",";
        appendPoint(json, piece.control);
        json << ',';
        break;
    case PieceKind::Cubic:
        json << "[\"C\",";
        appendPoint(json, piece.control);
        json << ',';
        appendPoint(json, piece.control2);
        json << ',';
        break;
    case PieceKind::Circle:
        json << "[\"O\",";
        appendPoint(json, piece.control);
        json << ',';
        appendValue(json, piece.radius);
        json << "]";
        return;
    case PieceKind::Ellipse:
        json << "[\"E\",";
        appendPoint(json, piece.control);
        json << ',';
        appendPoint(json, piece.control2);
        json << ',';
        appendValue(json, piece.radius);
        json << "]";
        return;
    }
    appendPoint(json, piece.to);
    json << ']';
}

void appendPath(TextBuffer& json, const Drawing& drawing, qsizetype path) {
    const std::vector<PathPiece> pieces = drawing.paths.pieces(path);
    json << "\"start\":[";
    appendPoint(json, drawing.paths.start(path));
    json << "],\"segments\":";
    appendList(json, static_cast<qsizetype>(pieces.size()),
               [&](qsizetype i) { appendPiece(json, pieces[static_cast<std::size_t>(i)]); });
}

/// The index of a path from 1 on; negative when it is run backwards.
void appendUse(TextBuffer& json, const PathUse& use) {
    const auto number = static_cast<int>(use.path) + 1;
    json << (use.backwards ? -number : number);
}

const char* nameOf(ShapeKind kind) {
    switch (kind) {
    case ShapeKind::Region:
        return "region";
    case ShapeKind::Text:
        return "text";
    case ShapeKind::Solid:
        return "solid";
    default:
        return "outline";
    }
}

void appendShape(TextBuffer& json, const Drawing& drawing, const Shape& shape) {
    json << "{\"kind\":\"" << nameOf(shape.kind) << "\",\"layer\":" << shape.color
         << ",\"enclosing\":" << static_cast<int>(shape.enclosing) << ",\"rings\":";
    appendList(json, shape.ringCount, [&](qsizetype r) {
        const Ring& ring = drawing.rings[shape.firstRing + r];
        appendList(json, ring.count,
                   [&](qsizetype k) { appendUse(json, drawing.uses[ring.firstUse + k]); });
    });
    json << '}';
}

void appendStroke(TextBuffer& json, const Drawing& drawing, const Stroke& stroke) {
    static constexpr const char* Names[] = {"line", "dashed", "hatch"};
    json << "{\"kind\":\"" << Names[static_cast<int>(stroke.kind)]
         << "\",\"layer\":" << stroke.color << ",\"path\":" << static_cast<int>(stroke.path) + 1
         << ",\"width\":" << stroke.width << ",\"nodes\":[" << stroke.startNode << ','
         << stroke.endNode << ']';
    if (stroke.dashPattern >= 0) {
        const QList<double>& dashes = drawing.dashPatterns[stroke.dashPattern];
        json << ",\"dashes\":";
        appendList(json, dashes.size(), [&](qsizetype i) { appendValue(json, dashes[i]); });
    }
    json << '}';
}

/// What outlines have no use for: boundaries that shapes share, strokes and nodes.
void appendMap(TextBuffer& json, const Drawing& drawing) {
    json << ",\"paths\":";
    appendList(json, drawing.paths.size(), [&](qsizetype i) {
        json << '{';
        appendPath(json, drawing, i);
        json << '}';
    });
    json << ",\"shapes\":";
    appendList(json, drawing.shapes.size(),
               [&](qsizetype i) { appendShape(json, drawing, drawing.shapes[i]); });
    json << ",\"strokes\":";
    appendList(json, drawing.strokes.size(),
               [&](qsizetype i) { appendStroke(json, drawing, drawing.strokes[i]); });
    json << ",\"nodes\":";
    appendList(json, drawing.nodes.size(), [&](qsizetype i) {
        json << '[';
        appendPoint(json, drawing.nodes[i]);
        json << ']';
    });
}

} // namespace

void JsonWriter::write(const Drawing& whole, QIODevice& device) const {
    const Drawing drawing = visibleParts(whole, options);
    TextBuffer json(device);
    json << "{\"width\":";
    json << drawing.size.width();
    json << ",\"height\":";
    json << drawing.size.height();
    json << ",\"palette\":";
    appendList(json, drawing.palette.size(),
               [&](qsizetype i) { appendColor(json, drawing.palette[i]); });
    if (drawing.method == Method::Outlines) {
        json << ",\"polylines\":";
        appendList(json, drawing.shapes.size(),
                   [&](qsizetype i) { appendOutline(json, drawing, drawing.shapes[i]); });
    } else {
        appendMap(json, drawing);
    }
    json << "}\n";
}
