#include "svgwriter.h"

#include "../geometry/vectors.h"
#include "paintorder.h"
#include "svgpath.h"
#include "textbuffer.h"
#include "underlay.h"
#include "visible.h"

#include <cmath>

namespace {

constexpr int UsualDigits = 3; ///< after the point: a thousandth of a pixel

/// Writes path data, whose y axis points down, from drawing coordinates.
class PathData {
public:
    PathData(TextBuffer& svg, double height) : svg(svg), height(height) {
    }

    void append(std::span<const PathPiece> pieces, QPointF start) {
        command('M', {start});
        for (const PathPiece& piece : pieces) {
            if (piece.kind == PieceKind::Line)
                command('L', {piece.to});
            else
                command('Q', {piece.control, piece.to});
        }
        svg << 'Z';
    }

private:
    void command(char letter, std::initializer_list<QPointF> points) {
        svg << letter;
        bool first = true;
        for (const QPointF& point : points) {
            if (!first)
                svg << ' ';
            first = false;
            svg << point.x() << ' ' << height - point.y();
        }
    }

    TextBuffer& svg;
    double height;
};

class Document {
public:
    Document(const Drawing& drawing, const WriterOptions& options, QIODevice& device)
        : drawing(drawing), options(options), svg(device) {
        if (options.precision)
            svg.setPrecision(*options.precision);
        for (const QColor& color : drawing.palette)
            styles.append(styleOf(color));
    }

    void write() {
        writeHead();
        if (drawing.method == Method::Outlines) {
            writeOutlines();
        } else {
            if (drawing.method == Method::Regions && options.outlinesOnly)
                writeBoundaries();
            else if (drawing.method == Method::Regions)
                writeRegions();
            writeAreas(ShapeKind::Solid);
            writeAreas(ShapeKind::Text);
            for (const StrokeKind kind : {StrokeKind::Hatch, StrokeKind::Line, StrokeKind::Dashed})
                writeStrokes(kind);
        }
        svg << "</svg>\n";
    }

private:
    QByteArray styleOf(const QColor& color) const {
        const QByteArray name = color.name(QColor::HexRgb).toLatin1();
        const auto withOpacity = [&](const QByteArray& property) {
            return color.alpha() == 255 ? QByteArray()
                                        : ' ' + property + "-opacity=\"" +
                                              QByteArray::number(opacityOf(color)) + '"';
        };
        if (options.outlinesOnly)
            return "fill=\"none\" stroke=\"" + name + '"' + withOpacity("stroke");
        QByteArray style = "fill=\"" + name + '"' + withOpacity("fill");
        // Along a seam two half transparent edges let the background through.
        if (options.closeSeams && color.alpha() == 255)
            style += " stroke=\"" + name + "\" stroke-width=\"0.5\" stroke-linejoin=\"round\"";
        return style;
    }

    void writeHead() {
        const int width = drawing.size.width();
        const int height = drawing.size.height();
        svg << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
               "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"";
        writeLength(width);
        svg << "\" height=\"";
        writeLength(height);
        svg << "\" viewBox=\"0 0 " << width << ' ' << height << "\">\n<title>"
            << drawing.title.toHtmlEscaped().toUtf8() << "</title>\n<desc>" << description()
            << " in " << static_cast<int>(drawing.palette.size()) << " colours, traced from "
            << width << " x " << height << " pixels by ovtrace</desc>\n";
    }

    void writeOutlines() {
        if (const auto order = layerOrder(drawing)) {
            for (const int layer : *order)
                writeLayer(layer);
        } else {
            for (qsizetype i = 0; i < drawing.shapes.size(); ++i)
                writePath(i, styles[drawing.shapes[i].color]);
        }
    }

    int digits() const {
        return options.precision.value_or(UsualDigits);
    }

    /// One element for all rings.
    void writeRings(std::span<const std::vector<PathPiece>> rings, const QByteArray& attributes) {
        if (rings.size() == 1 && rings[0].size() == 1 && rings[0][0].kind == PieceKind::Circle) {
            writeCircle(rings[0][0], attributes);
            return;
        }
        svg << "<path" << attributes << " d=\"";
        SvgPath path(svg, drawing.size.height(), digits());
        for (const std::vector<PathPiece>& ring : rings)
            path.append(ring, true);
        svg << "\"/>\n";
    }

    void writeCircle(const PathPiece& circle, const QByteArray& attributes) {
        svg << "<circle" << attributes;
        writeAttribute("cx", circle.control.x());
        writeAttribute("cy", drawing.size.height() - circle.control.y());
        writeAttribute("r", circle.radius);
        svg << "/>\n";
    }

    void writeEllipse(const PathPiece& ellipse, const QByteArray& attributes) {
        constexpr double DegreesPerRadian = 180.0 / 3.14159265358979323846;
        const QPointF axis = ellipse.control2;
        const double x = ellipse.control.x();
        const double y = drawing.size.height() - ellipse.control.y();
        svg << "<ellipse" << attributes;
        writeAttribute("cx", x);
        writeAttribute("cy", y);
        writeAttribute("rx", length(axis));
        writeAttribute("ry", ellipse.radius);
        if (axis.y() != 0.0) {
            svg << " transform=\"rotate(";
            appendShort(svg, -std::atan2(axis.y(), axis.x()) * DegreesPerRadian, digits());
            svg << ' ';
            appendShort(svg, x, digits());
            svg << ' ';
            appendShort(svg, y, digits());
            svg << ")\"";
        }
        svg << "/>\n";
    }

    void writeAttribute(const char* name, double value) {
        svg << ' ' << name << "=\"";
        appendShort(svg, value, digits());
        svg << '"';
    }

    /// Fills, neighbours in the order of painting that have one colour in a group.
    void writeRegions() {
        const Underlay underlay(drawing);
        const QList<qsizetype>& order = underlay.order();
        for (qsizetype i = 0; i < order.size();) {
            const int color = drawing.shapes[order[i]].color;
            qsizetype end = i;
            while (end < order.size() && drawing.shapes[order[end]].color == color)
                ++end;
            const bool isGroup = end - i > 1;
            const QByteArray fill = ' ' + fillOf(color);
            if (isGroup)
                svg << "<g" << fill << ">\n";
            for (; i < end; ++i)
                writeRings(options.cutOut ? plainRings(order[i]) : underlay.rings(order[i]),
                           isGroup ? QByteArray() : fill);
            if (isGroup)
                svg << "</g>\n";
        }
    }

    std::vector<std::vector<PathPiece>> plainRings(qsizetype shape) const {
        std::vector<std::vector<PathPiece>> rings;
        for (const Ring& ring : drawing.ringsOf(drawing.shapes[shape]))
            rings.push_back(drawing.piecesOf(ring));
        return rings;
    }

    /// Every boundary once, in the colour of the region that it encloses or bounds.
    void writeBoundaries() {
        QList<bool> isWritten(drawing.paths.size(), false);
        for (qsizetype i = drawing.shapes.size() - 1; i >= 0; --i) {
            const Shape& shape = drawing.shapes[i];
            svg << "<g " << styles[shape.color] << ">\n";
            for (const Ring& ring : drawing.ringsOf(shape)) {
                for (qsizetype k = ring.firstUse; k < ring.firstUse + ring.count; ++k) {
                    const qsizetype path = drawing.uses[k].path;
                    if (!isWritten[path])
                        writeLine(drawing.paths.pieces(path), {});
                    isWritten[path] = true;
                }
            }
            svg << "</g>\n";
        }
    }

    /// A line along pieces: a circle or an ellipse as such.
    void writeLine(const std::vector<PathPiece>& pieces, const QByteArray& attributes) {
        if (pieces.empty())
            return;
        if (pieces.front().kind == PieceKind::Circle) {
            writeCircle(pieces.front(), attributes);
            return;
        }
        if (pieces.front().kind == PieceKind::Ellipse) {
            writeEllipse(pieces.front(), attributes);
            return;
        }
        svg << "<path" << attributes << " d=\"";
        const bool isClosed = pieces.size() > 1 && pieces.back().to == pieces.front().from;
        SvgPath(svg, drawing.size.height(), digits()).append(pieces, isClosed);
        svg << "\"/>\n";
    }

    /// A group's name, with its colour where there are several.
    QByteArray groupName(const char* what, int color) const {
        QByteArray name(what);
        if (drawing.palette.size() > 1)
            name += '-' + QByteArray::number(color) + '-' +
                    drawing.palette[color].name(QColor::HexRgb).mid(1).toLatin1();
        return name;
    }

    void writeAreas(ShapeKind kind) {
        for (int color = 0; color < drawing.palette.size(); ++color) {
            bool isOpen = false;
            for (qsizetype i = 0; i < drawing.shapes.size(); ++i) {
                if (drawing.shapes[i].kind != kind || drawing.shapes[i].color != color)
                    continue;
                if (!isOpen)
                    svg << "<g id=\""
                        << groupName(kind == ShapeKind::Text ? "text" : "solid", color) << "\" "
                        << fillOf(color) << " fill-rule=\"evenodd\">\n";
                isOpen = true;
                writeRings(plainRings(i), {});
            }
            if (isOpen)
                svg << "</g>\n";
        }
    }

    static const char* nameOf(StrokeKind kind) {
        switch (kind) {
        case StrokeKind::Dashed:
            return "dashed";
        case StrokeKind::Hatch:
            return "hatch";
        default:
            return "lines";
        }
    }

    /// A group a colour, in it one a width.
    void writeStrokes(StrokeKind kind) {
        for (int color = 0; color < drawing.palette.size(); ++color) {
            bool isOpen = false;
            for (int width = 0; width < drawing.widths.size(); ++width)
                writeStrokes(kind, color, width, isOpen);
            if (isOpen)
                svg << "</g>\n";
        }
    }

    void writeStrokes(StrokeKind kind, int color, int width, bool& isOpen) {
        bool isWidthOpen = false;
        for (const Stroke& stroke : drawing.strokes) {
            if (stroke.kind != kind || stroke.color != color || stroke.widthClass != width)
                continue;
            if (!isOpen)
                svg << "<g id=\"" << groupName(nameOf(kind), color) << "\" fill=\"none\" stroke=\""
                    << shortName(color) << "\" stroke-linejoin=\"round\""
                    << (kind == StrokeKind::Dashed ? "" : " stroke-linecap=\"round\"") << ">\n";
            isOpen = true;
            if (!isWidthOpen) {
                svg << "<g";
                writeAttribute("stroke-width", stroke.width);
                svg << ">\n";
            }
            isWidthOpen = true;
            writeLine(drawing.paths.pieces(stroke.path), dashesOf(stroke));
        }
        if (isWidthOpen)
            svg << "</g>\n";
    }

    QByteArray dashesOf(const Stroke& stroke) const {
        if (stroke.dashPattern < 0)
            return {};
        QByteArrayList lengths;
        for (const double each : drawing.dashPatterns[stroke.dashPattern])
            lengths.append(QByteArray::number(each, 'g', 6));
        return " stroke-dasharray=\"" + lengths.join(' ') + '"';
    }

    /// "#rgb" where that says the same as "#rrggbb".
    QByteArray shortName(int color) const {
        const QByteArray name = drawing.palette[color].name(QColor::HexRgb).toLatin1();
        const bool isDouble = name[1] == name[2] && name[3] == name[4] && name[5] == name[6];
        return isDouble ? QByteArray{"#"} + name[1] + name[3] + name[5] : name;
    }

    QByteArray fillOf(int color) const {
        QByteArray fill = "fill=\"" + shortName(color) + '"';
        if (drawing.palette[color].alpha() != 255)
            fill +=
                " fill-opacity=\"" + QByteArray::number(opacityOf(drawing.palette[color])) + '"';
        return fill;
    }

    QByteArray description() const {
        const auto count = [](qsizetype number, const char* what) {
            return QByteArray::number(number) + ' ' + what;
        };
        switch (drawing.method) {
        case Method::Regions:
            return count(drawing.shapes.size(), "regions");
        case Method::Centerlines:
            return count(drawing.strokes.size(), "lines");
        default:
            return count(drawing.shapes.size(), "outlines");
        }
    }

    void writeLength(int pixels) {
        if (drawing.pixelMillimetres)
            svg << QByteArray::number(pixels * *drawing.pixelMillimetres, 'g', 12) << "mm";
        else
            svg << pixels;
    }

    void writeLayer(int layer) {
        const QByteArray name = drawing.palette[layer].name(QColor::HexRgb).mid(1).toLatin1();
        svg << "<g id=\"color-" << layer << '-' << name << "\" " << styles[layer] << ">\n";
        for (qsizetype i = 0; i < drawing.shapes.size(); ++i) {
            if (drawing.shapes[i].color == layer)
                writePath(i, {});
        }
        svg << "</g>\n";
    }

    void writePath(qsizetype i, const QByteArray& style) {
        svg << "<path " << style << (style.isEmpty() ? "d=\"" : " d=\"");
        const qsizetype path = drawing.uses[drawing.outerRing(drawing.shapes[i]).firstUse].path;
        PathData(svg, drawing.size.height())
            .append(drawing.paths.pieces(path), drawing.paths.start(path));
        svg << "\"/>\n";
    }

    const Drawing& drawing;
    const WriterOptions& options;
    TextBuffer svg;
    QList<QByteArray> styles; ///< by layer
};

} // namespace

void SvgWriter::write(const Drawing& drawing, QIODevice& device) const {
    const Drawing visible = visibleParts(drawing, options);
    Document(visible, options, device).write();
}
