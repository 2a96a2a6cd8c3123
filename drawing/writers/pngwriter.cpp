#include "pngwriter.h"

#include "../quietstderr.h"
#include "../settingtable.h"
#include "picture.h"
#include "visible.h"

#include <QBuffer>
#include <QImageWriter>
#include <QtEndian>

#include <algorithm>
#include <cmath>
#include <new>
#include <stdexcept>

namespace {

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
    const Drawing visible = options.overlay ? drawing : visibleParts(drawing, options);
    PicturePainter painter(picture, visible, options.scale);
    if (options.overlay)
        painter.paintOverlay();
    else
        painter.paintFilled(options.cutOut);
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
