#include "pngwriter.h"

#include "../quietstderr.h"
#include "../settingtable.h"
#include "painting.h"
#include "visible.h"

#include <QBuffer>
#include <QImageWriter>
#include <QPainter>
#include <QtEndian>

#include <algorithm>
#include <cmath>
#include <new>
#include <stdexcept>

namespace {

constexpr double FadedOpacity = 0.35; ///< of the image below an overlay
constexpr double LineWidth = 1.2;     ///< of an overlay, in pixels of the picture
constexpr double NodeSide = 3.0;      ///< likewise
constexpr double NodeShare = 1.6;     ///< how much larger the places are where paths meet

void paintOverlay(QPainter& painter, const Drawing& drawing, double scale) {
    painter.fillRect(QRect(QPoint(0, 0), drawing.size), Qt::white);
    painter.setOpacity(FadedOpacity);
    painter.drawImage(0, 0, drawing.image);
    painter.setOpacity(1.0);
    const double side = NodeSide / scale;
    const int height = drawing.size.height();
    const auto mark = [&](QPointF point, double width, const QColor& color) {
        const QPointF node(point.x(), height - point.y());
        painter.fillRect(QRectF(node.x() - width / 2.0, node.y() - width / 2.0, width, width),
                         color);
    };
    for (qsizetype i = 0; i < drawing.paths.size(); ++i) {
        QPainterPath path;
        const std::vector<PathPiece> pieces = drawing.paths.pieces(i);
        appendTo(path, pieces, height);
        if (drawing.method == Method::Outlines)
            path.closeSubpath();
        painter.strokePath(path, QPen(QColor(200, 0, 60), LineWidth / scale));
        for (const PathPiece& piece : pieces)
            mark(piece.to, side, QColor(0, 70, 200));
    }
    for (const QPointF& node : drawing.nodes)
        mark(node, NodeShare * side, QColor(0, 130, 60));
}

/// The picture with straight alpha, worked out in whole numbers. Qt's own conversion takes the
/// processor's approximate reciprocals, which are not the same on all of them.
QImage withStraightAlpha(const QImage& premultiplied) {
    QImage image(premultiplied.size(), QImage::Format_ARGB32);
    if (image.isNull())
        throw std::bad_alloc();
    for (int y = 0; y < image.height(); ++y) {
        const auto* from = reinterpret_cast<const QRgb*>(premultiplied.constScanLine(y));
        std::transform(from, from + image.width(), reinterpret_cast<QRgb*>(image.scanLine(y)),
                       [](QRgb pixel) { return qUnpremultiply(pixel); });
    }
    return image;
}

/// A PNG file without its resolution: the library gives pictures that have none that of the screen.
QByteArray withoutResolution(const QByteArray& png) {
    constexpr qsizetype SignatureBytes = 8;
    constexpr qsizetype ChunkFrameBytes = 12; // length, type and checksum
    QByteArray kept = png.left(SignatureBytes);
    for (qsizetype at = SignatureBytes; at + ChunkFrameBytes <= png.size();) {
        const auto size = static_cast<qsizetype>(qFromBigEndian<quint32>(png.constData() + at));
        if (png.mid(at + 4, 4) != "pHYs")
            kept.append(png.mid(at, size + ChunkFrameBytes));
        at += size + ChunkFrameBytes;
    }
    return kept;
}

} // namespace

void PngWriter::write(const Drawing& drawing, QIODevice& device) const {
    const auto scaled = [&](int pixels) {
        return std::max(1, static_cast<int>(std::lround(pixels * options.scale)));
    };
    QImage picture(scaled(drawing.size.width()), scaled(drawing.size.height()),
                   QImage::Format_ARGB32_Premultiplied);
    if (picture.isNull())
        throw std::runtime_error("the picture would be too large; choose a smaller " +
                                 settingName("scale").toStdString());
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setRenderHint(QPainter::SmoothPixmapTransform, options.scale < 1.0);
    painter.scale(options.scale, options.scale);
    if (options.overlay)
        paintOverlay(painter, drawing, options.scale);
    else
        paintFilled(painter, visibleParts(drawing, options), options.cutOut);
    painter.end();
    picture = withStraightAlpha(picture);
    if (drawing.pixelMillimetres) {
        const int dots =
            static_cast<int>(std::lround(options.scale * 1000.0 / *drawing.pixelMillimetres));
        picture.setDotsPerMeterX(dots);
        picture.setDotsPerMeterY(dots);
    }
    QByteArray png;
    QBuffer buffer(&png);
    QImageWriter writer(drawing.pixelMillimetres ? &device : &buffer, "png");
    const QuietStandardError quiet; // the library beneath has words of its own for a full disk
    if (!writer.write(picture))
        throw std::runtime_error(writer.errorString().toStdString());
    if (!drawing.pixelMillimetres)
        device.write(withoutResolution(png));
}
