#include "support/program.h"

#include <QBuffer>
#include <QImage>
#include <QImageReader>
#include <QImageWriter>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QPainter>

// Which files are read, and which of the images in them.

namespace {

QByteArray bytes2(qsizetype value) {
    return QByteArray{}
        .append(static_cast<char>(value & 255))
        .append(static_cast<char>((value >> 8) & 255));
}

QByteArray bytes4(qsizetype value) {
    return bytes2(value & 0xffff) + bytes2(value >> 16);
}

/// Black on white: one square for page 1, two for page 2 and so on, each page of another size.
QImage page(int number) {
    QImage image(20 + 20 * number, 24, QImage::Format_RGB32);
    image.fill(Qt::white);
    for (int square = 0; square < number; ++square) {
        for (int y = 6; y < 18; ++y) {
            for (int x = 0; x < 12; ++x)
                image.setPixel(6 + 20 * square + x, y, qRgb(0, 0, 0));
        }
    }
    return image;
}

QList<QImage> pages(int count) {
    QList<QImage> images;
    for (int number = 1; number <= count; ++number)
        images.append(page(number));
    return images;
}

/// A GIF file whose frames are images of two colours, black and white.
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

/// The pages in two colours, on sheets of one size.
QList<QImage> frames(int count) {
    QList<QImage> images;
    for (const QImage& image : pages(count)) {
        QImage frame(page(count).size(), QImage::Format_RGB32);
        frame.fill(Qt::white);
        QPainter(&frame).drawImage(0, 0, image);
        frame =
            frame.convertToFormat(QImage::Format_Indexed8, {qRgb(0, 0, 0), qRgb(255, 255, 255)});
        images.append(frame);
    }
    return images;
}

/// A TIFF file of grey pages, uncompressed.
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

/// An icon file, whose images are PNG files.
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

/// A TGA file of version 2, uncompressed, of 24 bits a pixel, rows from the top.
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

class Input : public ProgramTest {
protected:
    /// How many outlines there are; each page has one more than its squares, for the paper.
    static qsizetype outlines(const QString& fileName, const QStringList& options = {},
                              const QByteArray& input = {}) {
        const auto result = run(QStringList{fileName, "-f", "json", "-o", "-", "--palette",
                                            "#000000,#ffffff", "--set", "blurradius=0"} +
                                    options,
                                input);
        EXPECT_EQ(result.status, 0) << result.errors.toStdString();
        return QJsonDocument::fromJson(result.output).object()["polylines"].toArray().size();
    }
    QString write(const QString& name, const QByteArray& bytes) const {
        writeFile(path(name), bytes);
        return path(name);
    }
};

} // namespace

TEST_F(Input, PagesAreThoseOfTheFile) {
    const QStringList files{write("a.tif", tiffFile(pages(4))), write("a.ico", icoFile(pages(4))),
                            write("a.gif", gifFile(frames(4)))};
    for (const QString& file : files) {
        EXPECT_EQ(outlines(file), 2) << file.toStdString();
        for (int number = 1; number <= 4; ++number) {
            const QStringList option{"--page", QString::number(number)};
            EXPECT_EQ(outlines(file, option), number + 1) << file.toStdString();
            EXPECT_EQ(outlines("-", option, contents(file)), number + 1) << file.toStdString();
        }
        expectError(run({file, "--page", "5"}), 1, "has no page 5");
        expectError(run({file, "--page", "100000"}), 1, "has no page 100000");
    }
}

TEST_F(Input, SizesAreThoseOfThePage) {
    const QString file = write("a.tif", tiffFile(pages(2)));
    expectError(run({file, "--page", "2", "--max-pixels", "1000"}), 1, "60 x 24 pixels");
    EXPECT_EQ(outlines(file, {"--max-pixels", "1000"}), 2);
}

TEST_F(Input, FilesOfOneImageHaveOnePage) {
    for (const QString& file : {sample("logo.png"), write("a.tif", tiffFile(pages(1)))})
        expectError(run({file, "--page", "2"}), 1, "has no page 2");
    expectError(run({sample("logo.png"), "--page", "0"}), 2, "--page takes");
}

TEST_F(Input, FurtherFormatsAreRead) {
    const QList<QByteArray> known = QImageReader::supportedImageFormats();
    for (const char* format : {"tif", "tiff", "webp", "tga", "wbmp", "icns", "ico", "gif"})
        EXPECT_TRUE(known.contains(format)) << format;
    EXPECT_EQ(outlines(write("a.webp", encoded(page(3), "webp"))), 4);
    EXPECT_EQ(outlines(write("a.tga", tgaFile(page(3)))), 4);
    EXPECT_EQ(outlines(write("a.wbmp", encoded(page(3), "wbmp"))), 4);
    EXPECT_EQ(outlines("-", {}, tgaFile(page(3))), 4);
    // The contents decide, whatever the name says.
    EXPECT_EQ(outlines(write("b.png", encoded(page(3), "webp"))), 4);
    EXPECT_EQ(outlines(write("b.tga", tiffFile(pages(1)))), 2);
}
