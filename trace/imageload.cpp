#include "imageload.h"

#include <QImage>

#include <bit>
#include <cstring>

namespace ovtrace {
namespace {

/// Flips the top bit of each channel: value 0..255 becomes value - 128 in a signed byte.
constexpr QRgb StoredFlip = 0x80808080U;

void storePixel(char* stored, QRgb pixel) {
    const QRgb flipped = pixel ^ StoredFlip;
    if constexpr (std::endian::native == std::endian::little) {
        // Red and blue change places: ARGB words lie in memory as blue, green, red, alpha.
        const QRgb word =
            (flipped & 0xff00ff00U) | (flipped >> 16 & 0xffU) | (flipped & 0xffU) << 16;
        std::memcpy(stored, &word, sizeof word);
    } else {
        stored[0] = static_cast<char>(qRed(flipped));
        stored[1] = static_cast<char>(qGreen(flipped));
        stored[2] = static_cast<char>(qBlue(flipped));
        stored[3] = static_cast<char>(qAlpha(flipped));
    }
}

/// A row of a format whose scan lines hold what pixel() returns, but for the alpha in `opaque`.
void loadRowRgb32(const uchar* line, int width, QRgb opaque, char* stored) {
    const QRgb* row = reinterpret_cast<const QRgb*>(line);
    for (int x = 0; x < width; ++x)
        storePixel(stored + qsizetype(x) * 4, row[x] | opaque);
}

void loadRowGrey8(const uchar* line, int width, char* stored) {
    for (int x = 0; x < width; ++x)
        storePixel(stored + qsizetype(x) * 4, qRgb(line[x], line[x], line[x]));
}

void loadRow(const QImage& image, int y, char* stored) {
    switch (image.format()) {
    case QImage::Format_RGB32:
        loadRowRgb32(image.constScanLine(y), image.width(), 0xff000000U, stored);
        break;
    case QImage::Format_ARGB32:
        loadRowRgb32(image.constScanLine(y), image.width(), 0, stored);
        break;
    case QImage::Format_Grayscale8:
        loadRowGrey8(image.constScanLine(y), image.width(), stored);
        break;
    default:
        for (int x = 0; x < image.width(); ++x)
            storePixel(stored + qsizetype(x) * 4, image.pixel(x, y));
    }
}

} // namespace

void appendPixels(const QImage& image, QList<char>& data) {
    // Through a small buffer: the large list is written once, never zeroed first.
    QList<char> row(qsizetype(4) * image.width());
    for (int y = 0; y < image.height(); ++y) {
        loadRow(image, y, row.data());
        data.append(row);
    }
}

ImageData loadImageData(const QImage& image) {
    ImageData loaded;
    loaded.width = image.width();
    loaded.height = image.height();
    loaded.data.reserve(qsizetype(4) * loaded.width * loaded.height);
    appendPixels(image, loaded.data);
    return loaded;
}

} // namespace ovtrace
