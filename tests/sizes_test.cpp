// The resolution that files state, the sizes that follow, and pages of paper.

#include <drawing/errors.h>
#include <drawing/fileresolution.h>
#include <drawing/settingvalue.h>
#include <drawing/sizing.h>
#include <drawing/writers/pdfpage.h>
#include <drawing/writers/pdfwriter.h>

#include <QBuffer>
#include <QImage>
#include <QImageWriter>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <ctime>

namespace {

FileResolution stated(QByteArray bytes, int page = 1) {
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    const qint64 place = std::min<qint64>(3, bytes.size());
    buffer.seek(place);
    const FileResolution resolution = readFileResolution(buffer, page);
    EXPECT_EQ(buffer.pos(), place);
    return resolution;
}

QByteArray encoded(const char* format, int dotsPerMeter) {
    QImage image(4, 3, QImage::Format_RGB32);
    image.fill(Qt::white);
    image.setDotsPerMeterX(dotsPerMeter);
    image.setDotsPerMeterY(dotsPerMeter);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    EXPECT_TRUE(image.save(&buffer, format));
    return bytes;
}

/// A TIFF file of directories alone, each of which states a resolution.
QByteArray tiff(const QList<int>& resolutions, int unit) {
    QByteArray bytes("II*\0", 4);
    const auto append = [&](quint32 value, int size) {
        for (int i = 0; i < size; ++i)
            bytes.append(static_cast<char>(value >> (8 * i)));
    };
    append(8, 4);
    for (qsizetype i = 0; i < resolutions.size(); ++i) {
        const quint32 values = static_cast<quint32>(bytes.size()) + 2 + 3 * 12 + 4;
        append(3, 2);
        for (const quint32 tag : {282U, 283U}) {
            append(tag, 2);
            append(5, 2);
            append(1, 4);
            append(values, 4);
        }
        append(296, 2);
        append(3, 2);
        append(1, 4);
        append(static_cast<quint32>(unit), 4);
        append(i + 1 < resolutions.size() ? values + 8 : 0, 4);
        append(static_cast<quint32>(resolutions[i]), 4);
        append(1, 4);
    }
    return bytes;
}

Drawing blank(QSize size) {
    Drawing drawing;
    drawing.title = "plan";
    drawing.size = size;
    return drawing;
}

Drawing sized(QSize size, const SizeRequest& request, const FileResolution& stated = {}) {
    Drawing drawing = blank(size);
    setSize(drawing, "plan.png", {stated, {}}, request);
    return drawing;
}

QList<double> mediaBox(const QByteArray& pdf) {
    const qsizetype start = pdf.indexOf("/MediaBox [") + 11;
    QList<double> box;
    for (const QByteArray& number : pdf.mid(start, pdf.indexOf(']', start) - start).split(' '))
        box.append(number.toDouble());
    return box;
}

QByteArray pdfOf(const Drawing& drawing, const WriterOptions& options = {}) {
    QByteArray pdf;
    QBuffer buffer(&pdf);
    buffer.open(QIODevice::WriteOnly);
    PdfWriter(options).write(drawing, buffer);
    return pdf;
}

/// Every entry of the table points at its object.
void expectSoundTable(const QByteArray& pdf) {
    const qsizetype table =
        pdf.mid(pdf.lastIndexOf("startxref") + 10).trimmed().split('\n')[0].toLongLong();
    ASSERT_EQ(pdf.mid(table, 5), "xref\n");
    const QList<QByteArray> lines = pdf.mid(table).split('\n');
    const int count = lines[1].split(' ')[1].toInt();
    ASSERT_GT(count, 3);
    for (int i = 1; i < count; ++i) {
        const qsizetype place = lines[2 + i].left(10).toLongLong();
        EXPECT_TRUE(pdf.mid(place).startsWith(QByteArray::number(i) + " 0 obj")) << i;
    }
}

} // namespace

TEST(FileResolution, IsWhatTheFileStates) {
    EXPECT_NEAR(stated(encoded("png", 11811)).across, 300.0, 0.01);
    EXPECT_NEAR(stated(encoded("bmp", 11811)).down, 300.0, 0.01);
    EXPECT_NEAR(stated(encoded("jpg", 11811)).across, 300.0, 0.5);
    EXPECT_NEAR(stated(tiff({200}, 2)).across, 200.0, 1e-9);
    EXPECT_NEAR(stated(tiff({200, 300}, 2), 2).across, 300.0, 1e-9);
    EXPECT_NEAR(stated(tiff({100}, 3)).down, 254.0, 1e-9) << "in centimetres";
}

TEST(FileResolution, IsNoneWhereTheFileStatesNone) {
    for (const char* format : {"ppm", "xpm", "xbm"})
        EXPECT_EQ(stated(encoded(format, 11811)).across, 0.0) << format;
    QByteArray png = encoded("png", 11811);
    png.replace("pHYs", "puYs");
    EXPECT_EQ(stated(png).across, 0.0);
    QByteArray jpeg = encoded("jpg", 11811);
    jpeg[jpeg.indexOf("JFIF") + 7] = 0; // an aspect alone
    EXPECT_EQ(stated(jpeg).across, 0.0);
    QByteArray bmp = encoded("bmp", 11811);
    bmp.replace(38, 8, QByteArray(8, '\0'));
    EXPECT_EQ(stated(bmp).across, 0.0);
    EXPECT_EQ(stated(tiff({200}, 1)).across, 0.0) << "no unit";
    EXPECT_EQ(stated(tiff({200}, 2), 5).across, 0.0) << "no such page";
    EXPECT_EQ(stated("GIF89a").across, 0.0);
}

TEST(FileResolution, BrokenFilesEndTheSearch) {
    for (const QByteArray& whole :
         {encoded("png", 1000), encoded("jpg", 1000), encoded("bmp", 1000), tiff({1, 2}, 2)}) {
        for (qsizetype size = 0; size < std::min<qsizetype>(whole.size(), 200); ++size) {
            stated(whole.left(size));
            QByteArray changed = whole.left(200);
            changed[std::min(size, changed.size() - 1)] = '\xFF';
            stated(changed, 3);
        }
    }
    QByteArray ring = tiff({200}, 2);
    ring[ring.size() - 12] = 8; // the directory after the first is the first
    EXPECT_NEAR(stated(ring, 1000).across, 200.0, 1e-9);
}

TEST(Sizing, WidthAndHeightAreABox) {
    SizeRequest request;
    request.widthMillimetres = 100.0;
    EXPECT_DOUBLE_EQ(*sized({200, 50}, request).pixelMillimetres, 0.5);
    request.heightMillimetres = 10.0;
    EXPECT_DOUBLE_EQ(*sized({200, 50}, request).pixelMillimetres, 0.2);
    request.heightMillimetres = 1000.0;
    EXPECT_DOUBLE_EQ(*sized({200, 50}, request).pixelMillimetres, 0.5);
}

TEST(Sizing, TheFileMustSayWhatItIsAskedFor) {
    SizeRequest request;
    request.dotsFromFile = true;
    EXPECT_DOUBLE_EQ(*sized({10, 10}, request, {254.0, 254.0}).pixelMillimetres, 0.1);
    for (const FileResolution& stated : {FileResolution{}, FileResolution{204.0, 98.0}}) {
        try {
            sized({10, 10}, request, stated);
            FAIL() << "a size out of nothing";
        } catch (const FileError& error) {
            EXPECT_TRUE(QString(error.what()).startsWith("plan.png: "));
        }
    }
}

TEST(Sizing, AScaleMultipliesCoordinatesAlone) {
    SizeRequest request;
    request.dotsPerInch = 254.0;
    request.modelScale = 100.0;
    request.unit = Unit::Metre;
    const Drawing drawing = sized({10, 10}, request);
    EXPECT_DOUBLE_EQ(drawing.unitsPerPixel(), 0.01);
    EXPECT_DOUBLE_EQ(*drawing.pixelMillimetres, 0.1);
    request.unit = Unit::Foot;
    EXPECT_NEAR(sized({10, 10}, request).unitsPerPixel(), 10.0 / 304.8, 1e-12);
}

TEST(PdfPages, AreAsLargeAsTheDrawing) {
    for (const double pixel : {0.001, 0.0333, 1.0 / 3.0, 2.0}) {
        Drawing drawing = blank({31, 17});
        drawing.pixelMillimetres = pixel;
        const QByteArray pdf = pdfOf(drawing);
        const QList<double> box = mediaBox(pdf);
        ASSERT_EQ(box.size(), 4);
        EXPECT_NEAR(box[2] - box[0], 31 * pixel * 72.0 / 25.4, 1e-4) << pixel;
        EXPECT_NEAR(box[3] - box[1], 17 * pixel * 72.0 / 25.4, 1e-4) << pixel;
        expectSoundTable(pdf);
    }
    Drawing drawing = blank({30000, 10});
    drawing.pixelMillimetres = 1.0;
    EXPECT_THROW(pdfOf(drawing), std::runtime_error);
    drawing.pixelMillimetres = 1e-8;
    EXPECT_THROW(pdfOf(drawing), std::runtime_error);
}

TEST(PdfPages, PaperHasTheDrawingInItsMiddle) {
    WriterOptions options;
    options.paper = parsePaper("A3");
    Drawing drawing = blank({200, 100});
    const PdfPage fitted = layOutPage(drawing, options);
    const double millimetre = 72.0 / 25.4;
    EXPECT_NEAR(fitted.size.width(), 420 * millimetre, 1e-9) << "it lies as the drawing does";
    EXPECT_NEAR(fitted.pointsPerPixel, 2 * millimetre, 1e-9) << "400 mm between the margins";
    EXPECT_NEAR(fitted.corner.x(), 10 * millimetre, 1e-9);
    EXPECT_NEAR(fitted.corner.y(), (297 - 200) / 2.0 * millimetre, 1e-9);
    drawing.pixelMillimetres = 0.5;
    const PdfPage trueSize = layOutPage(drawing, options);
    EXPECT_NEAR(trueSize.pointsPerPixel, 0.5 * millimetre, 1e-9);
    EXPECT_NEAR(trueSize.corner.x(), 160 * millimetre, 1e-9);
    drawing.pixelMillimetres = 2.01;
    EXPECT_THROW(layOutPage(drawing, options), std::runtime_error);
    options.paper = parsePaper("a3-portrait");
    EXPECT_LT(layOutPage(blank({200, 100}), options).size.width(), 300 * millimetre);
    options.marginMillimetres = 150.0;
    EXPECT_THROW(layOutPage(blank({200, 100}), options), std::runtime_error);
}

TEST(PdfPages, BytesDoNotDependOnTheTimeZone) {
    const Drawing drawing = blank({20, 10});
    const QByteArray before = pdfOf(drawing);
#ifndef _WIN32
    const QByteArray zone = qgetenv("TZ");
    for (const char* other : {"Asia/Kolkata", "UTC", "America/St_Johns"}) {
        qputenv("TZ", other);
        tzset();
        EXPECT_EQ(pdfOf(drawing), before) << other;
    }
    qputenv("TZ", zone);
    tzset();
#endif
    EXPECT_TRUE(before.contains("/CreationDate (D:20000101000000Z)"));
}

TEST(SettingValue, PapersAndScales) {
    EXPECT_EQ(parsePaper("letter")->millimetres, QSizeF(215.9, 279.4));
    EXPECT_EQ(parsePaper("200 x 100 mm")->millimetres, QSizeF(200, 100));
    EXPECT_EQ(parsePaper("A4-Landscape")->millimetres, QSizeF(297, 210));
    for (const char* word : {"", "a7", "a4-sideways", "a4-landscape-portrait", "200mm", "0x1mm"})
        EXPECT_FALSE(parsePaper(word).has_value()) << word;
    EXPECT_DOUBLE_EQ(*parseRatio("1:100"), 100.0);
    EXPECT_DOUBLE_EQ(*parseRatio("5 : 1"), 0.2);
    for (const char* word : {"", "100", "1:0", "0:1", "1:-1", "1/100"})
        EXPECT_FALSE(parseRatio(word).has_value()) << word;
}
