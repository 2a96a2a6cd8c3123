#include "tracing.h"

#include "quietstderr.h"

#include <QFileInfo>
#include <QImage>
#include <QImageReader>

#include <tracebitmap.h>

namespace {

QImage readImage(const QString& fileName) {
    const QFileInfo file(fileName);
    if (!file.exists())
        throw FileError(QString("%1: no such file").arg(fileName));
    if (file.isDir())
        throw FileError(QString("%1: is a folder, not an image").arg(fileName));
    if (!file.isReadable())
        throw FileError(QString("%1: no permission to read it").arg(fileName));
    if (file.size() == 0)
        throw FileError(QString("%1: the file is empty").arg(fileName));
    QImageReader reader(fileName);
    QImage image;
    {
        const QuietStandardError quiet;
        image = reader.read();
    }
    if (image.isNull())
        throw FileError(QString("%1: cannot be decoded: %2").arg(fileName, reader.errorString()));
    return image;
}

/// Black and white by lightness. The tracer leaves an image with a colour table as it is: its
/// table is put through the tracer's threshold instead of its pixels.
void thresholdColorTable(QImage& image, OvTraceBitmap& tracer) {
    const QList<QRgb> table = image.colorTable();
    QImage colors(static_cast<int>(table.size()), 1, QImage::Format_ARGB32);
    for (int i = 0; i < colors.width(); ++i)
        colors.setPixel(i, 0, table[i]);
    tracer.preprocess(colors);
    for (int i = 0; i < colors.width(); ++i)
        image.setColor(i, colors.pixel(i, 0));
}

/// Tracer colours are four bytes red, green, blue, alpha, each the channel value minus 128.
QList<char> toStored(const QColor& color) {
    return {static_cast<char>(color.red() - 128), static_cast<char>(color.green() - 128),
            static_cast<char>(color.blue() - 128), static_cast<char>(color.alpha() - 128)};
}

QColor fromStored(const QList<char>& color) {
    const auto channel = [&](qsizetype i) { return static_cast<signed char>(color[i]) + 128; };
    return {channel(0), channel(1), channel(2), channel(3)};
}

void setOptions(OvTraceBitmap& tracer, const Arguments& arguments) {
    if (arguments.mode != Mode::Raw)
        tracer.setOption("monochrome", arguments.mode == Mode::Bw ? 1.0 : 0.0);
    if (arguments.mode == Mode::Bw)
        tracer.setOption("usebrightness", 1.0);
    for (const auto& [key, value] : arguments.options)
        tracer.setOption(key, value);
    QList<QList<char>> palette;
    for (const QColor& color : arguments.palette)
        palette.append(toStored(color));
    tracer.setPalette(palette);
}

} // namespace

Drawing traceFile(const QString& fileName, const Arguments& arguments) {
    QImage image = readImage(fileName);
    OvTraceBitmap tracer;
    setOptions(tracer, arguments);
    if (arguments.mode == Mode::Bw && image.pixelFormat().colorModel() == QPixelFormat::Indexed)
        thresholdColorTable(image, tracer);
    OvTraceBitmap::seedRandom(1);
    Drawing drawing;
    drawing.size = image.size();
    drawing.polylines = tracer.trace(image);
    drawing.layers = tracer.getPolylineLayers();
    for (const QList<char>& color : tracer.getPalette())
        drawing.palette.append(fromStored(color));
    return drawing;
}
