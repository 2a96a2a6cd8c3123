#include "svgwriter.h"

#include "paintorder.h"
#include "textbuffer.h"

#include <cmath>

namespace {

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
        if (const auto order = layerOrder(drawing)) {
            for (const int layer : *order)
                writeLayer(layer);
        } else {
            for (qsizetype i = 0; i < drawing.shapes.size(); ++i)
                writePath(i, styles[drawing.shapes[i].color]);
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
            << drawing.title.toHtmlEscaped().toUtf8() << "</title>\n<desc>"
            << static_cast<int>(drawing.shapes.size()) << " outlines in "
            << static_cast<int>(drawing.palette.size()) << " colours, traced from " << width
            << " x " << height << " pixels by ovtrace</desc>\n";
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
    Document(drawing, options, device).write();
}
