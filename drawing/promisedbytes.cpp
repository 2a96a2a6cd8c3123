#include "promisedbytes.h"

namespace {

int byteAt(const QByteArray& head, qsizetype place) {
    return place < head.size() ? static_cast<unsigned char>(head[place]) : 0;
}

int wordAt(const QByteArray& head, qsizetype place) {
    return byteAt(head, place) | byteAt(head, place + 1) << 8;
}

/// Bits a pixel; runs can be as short as 4 bytes for 255 x 255 pixels.
double bitmapBits(const QByteArray& head) {
    constexpr int Rle8 = 1;
    constexpr int Rle4 = 2;
    constexpr double RunBits = 32.0 / (255.0 * 255.0);
    const bool isOld = wordAt(head, 14) == 12; // a header with fields of two bytes
    const int compression = isOld ? 0 : wordAt(head, 30);
    if (compression == Rle8 || compression == Rle4)
        return RunBits;
    return isOld ? wordAt(head, 24) : wordAt(head, 28);
}

/// Bits a pixel; a run is one pixel and a byte for 128.
double targaBits(const QByteArray& head) {
    constexpr int RunLengthFlag = 8;
    const double bits = byteAt(head, 16);
    return (byteAt(head, 2) & RunLengthFlag) != 0 ? (bits + 8.0) / 128.0 : bits;
}

/// Bits a pixel of the formats that begin with P1 to P6; numbers written out take two characters.
double anymapBits(const QByteArray& head) {
    constexpr double AsText = 16.0;
    switch (byteAt(head, 1)) {
    case '1':
        return AsText / 2.0;
    case '2':
        return AsText;
    case '3':
        return 3.0 * AsText;
    case '4':
        return 1.0;
    case '5':
        return 8.0;
    default:
        return 24.0;
    }
}

} // namespace

double promisedBytes(const QByteArray& format, const QByteArray& head, QSize size) {
    double bits = 0.0;
    if (format == "bmp")
        bits = bitmapBits(head);
    else if (format == "tga")
        bits = targaBits(head);
    else if (format == "pbm" || format == "pgm" || format == "ppm")
        bits = anymapBits(head);
    return bits / 8.0 * size.width() * size.height();
}
