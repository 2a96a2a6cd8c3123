#include "imagefiles.h"

#include <QBuffer>
#include <QImageWriter>

#include <gtest/gtest.h>

namespace {

QByteArray bytes2(qsizetype value) {
    return QByteArray{}
        .append(static_cast<char>(value & 255))
        .append(static_cast<char>((value >> 8) & 255));
}

QByteArray bytes4(qsizetype value) {
    return bytes2(value & 0xffff) + bytes2(value >> 16);
}

} // namespace

QByteArray gifFile(const QList<QImage>& frames) {
    QByteArray gif = "GIF89a" + bytes2(frames[0].width()) + bytes2(frames[0].height()) +
                     QByteArray::fromHex("810000"
                                         "000000"
                                         "ffffff"
                                         "000000"
                                         "000000");
    for (const QImage& frame : frames) {
        gif += QByteArray::fromHex("21f904000a000000"
                                   "2c00000000") +
               bytes2(frame.width()) + bytes2(frame.height()) + QByteArray::fromHex("0002");
        // Codes of three bits; one that forgets what was before, every two pixels, keeps them
        // short.
        QByteArray data;
        int bits = 0;
        int count = 0;
        const auto put = [&](int code) {
            bits |= code << count;
            for (count += 3; count >= 8; count -= 8, bits >>= 8)
                data += static_cast<char>(bits & 255);
        };
        for (int i = 0; i < frame.width() * frame.height(); ++i) {
            if (i % 2 == 0)
                put(4);
            put(frame.pixelIndex(i % frame.width(), i / frame.width()));
        }
        put(5);
        data += static_cast<char>(bits & 255);
        for (qsizetype start = 0; start < data.size(); start += 255) {
            const QByteArray block = data.mid(start, 255);
            gif += static_cast<char>(block.size()) + block;
        }
        gif += '\0';
    }
    return gif + ';';
}

QByteArray tiffFile(const QList<QImage>& images) {
    constexpr int Entries = 9;
    QByteArray tiff = QByteArray("II*\0", 4) + bytes4(8);
    for (const QImage& image : images) {
        const qsizetype pixels = tiff.size() + 2 + Entries * 12 + 4;
        const qsizetype size = qsizetype(image.width()) * image.height();
        const auto entry = [](int tag, qsizetype value) {
            constexpr int Long = 4;
            return bytes2(tag) + bytes2(Long) + bytes4(1) + bytes4(value);
        };
        tiff += bytes2(Entries) + entry(256, image.width()) + entry(257, image.height()) +
                entry(258, 8) + entry(259, 1) + entry(262, 1) + entry(273, pixels) + entry(277, 1) +
                entry(278, image.height()) + entry(279, size);
        const bool isLast = &image == &images.last();
        tiff += bytes4(isLast ? 0 : pixels + size);
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x)
                tiff += static_cast<char>(qGray(image.pixel(x, y)));
        }
    }
    return tiff;
}

QByteArray encoded(const QImage& image, const char* format) {
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    QImageWriter writer(&buffer, format);
    writer.setQuality(100);
    EXPECT_TRUE(writer.write(image)) << format;
    return buffer.data();
}

QByteArray icoFile(const QList<QImage>& images) {
    QByteArray ico = bytes2(0) + bytes2(1) + bytes2(images.size());
    QByteArray data;
    for (const QImage& image : images) {
        const QByteArray png = encoded(image, "png");
        ico += static_cast<char>(image.width());
        ico += static_cast<char>(image.height());
        ico += bytes2(0) + bytes2(1) + bytes2(32) + bytes4(png.size()) +
               bytes4(6 + 16 * images.size() + data.size());
        data += png;
    }
    return ico + data;
}

QByteArray tgaFile(const QImage& image) {
    QByteArray tga = QByteArray::fromHex("000002000000000000000000") + bytes2(image.width()) +
                     bytes2(image.height()) + QByteArray::fromHex("1820");
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QRgb pixel = image.pixel(x, y);
            for (const int channel : {qBlue(pixel), qGreen(pixel), qRed(pixel)})
                tga += static_cast<char>(channel);
        }
    }
    return tga + QByteArray("\0\0\0\0\0\0\0\0TRUEVISION-XFILE.\0", 26);
}
