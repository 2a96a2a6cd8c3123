#include "support/imagefiles.h"
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

class Input : public ProgramTest {
protected:
    /// How many outlines there are; each page has one more than its squares, for the paper.
    static qsizetype outlines(const QString& fileName, const QStringList& options = {},
                              const QByteArray& input = {}) {
        const auto result =
            run(QStringList{fileName, "--method", "outlines", "-f", "json", "-o", "-", "--palette",
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

namespace {

/// A black frame on grey paper that gets darker to the right, turned by an angle in degrees.
QImage shadedFrame(double angle) {
    QImage image(500, 400, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(250, 200);
    painter.rotate(angle);
    painter.setPen(QPen(Qt::black, 6));
    painter.drawRect(-160, -100, 320, 200);
    painter.end();
    for (int y = 0; y < 400; ++y) {
        for (int x = 0; x < 500; ++x) {
            const int level = qRed(image.pixel(x, y)) * (820 - x) / 820;
            image.setPixel(x, y, qRgb(level, level, level));
        }
    }
    return image;
}

/// The corners of the box round everything that is black in a GeoJSON file.
QRectF blackBox(const QByteArray& json) {
    QRectF box;
    for (const QJsonValue feature : QJsonDocument::fromJson(json)["features"].toArray()) {
        if (feature["properties"]["color"].toString() != "#000000")
            continue;
        for (const QJsonValue point : feature["geometry"]["coordinates"][0].toArray()) {
            const QPointF place(point[0].toDouble(), point[1].toDouble());
            box = box.isNull() ? QRectF(place, QSizeF(1e-9, 1e-9))
                               : box.united(QRectF(place, QSizeF(1e-9, 1e-9)));
        }
    }
    return box;
}

} // namespace

TEST_F(Input, ShadowsAreTakenOutBeforeEveryMethod) {
    const QString image = saveImage(shadedFrame(0.0), "frame.png");
    for (const QString method : {"outlines", "regions", "centerlines"}) {
        for (const QStringList& options :
             {QStringList{"--threshold", "local"}, QStringList{"--whiten", "--threshold", "128"}}) {
            const auto result =
                run(QStringList{image, "--method", method, "-f", "json", "-o", "-"} + options);
            ASSERT_EQ(result.status, 0) << result.errors.toStdString();
            const QJsonObject drawing = QJsonDocument::fromJson(result.output).object();
            const QJsonArray paths =
                drawing[method == "outlines" ? "polylines" : "paths"].toArray();
            // Outlines have slivers where paper meets the frame, too.
            if (method == "outlines")
                EXPECT_LE(paths.size(), 8);
            else
                EXPECT_EQ(paths.size(), method == "regions" ? 3 : 4) << method.toStdString();
        }
    }
    expectError(run({image, "--threshold", "grey"}), 2, "--threshold takes");
}

TEST_F(Input, WhatWasStraightenedLiesAsBeforeInTheWorld) {
    const QString image = saveImage(shadedFrame(3.0), "askew.png");
    const QStringList options{image, "--method", "regions", "--threshold",        "local",
                              "-f",  "geojson",  "--world", "2,0,0,-2,1000,5000", "-o",
                              "-"};
    const QRectF before = blackBox(run(options).output);
    const QRectF after = blackBox(run(options + QStringList{"--deskew"}).output);
    // Two metres a pixel.
    EXPECT_NEAR(after.left(), before.left(), 2.0);
    EXPECT_NEAR(after.right(), before.right(), 2.0);
    EXPECT_NEAR(after.top(), before.top(), 2.0);
    EXPECT_NEAR(after.bottom(), before.bottom(), 2.0);
    const auto level = run({image, "--method", "regions", "--threshold", "local", "--deskew", "-f",
                            "geojson", "-o", "-"});
    // By itself the frame is level: as wide and high as it was drawn.
    EXPECT_NEAR(blackBox(level.output).width(), 326.0, 2.0);
    EXPECT_NEAR(blackBox(level.output).height(), 206.0, 2.0);
}

TEST_F(Input, StraightenedLinesAreLevel) {
    const QString image = saveImage(shadedFrame(3.0), "leaning.png");
    const auto leans = [&](const QStringList& options) {
        const auto result = run(QStringList{image, "--method", "centerlines", "--threshold",
                                            "local", "-f", "geojson", "-o", "-"} +
                                options);
        std::vector<double> found;
        const QJsonArray features =
            QJsonDocument::fromJson(result.output).object()["features"].toArray();
        for (const QJsonValue& feature : features) {
            const QJsonArray line = feature["geometry"]["coordinates"].toArray();
            const double dx = std::abs(line.last()[0].toDouble() - line.first()[0].toDouble());
            const double dy = std::abs(line.last()[1].toDouble() - line.first()[1].toDouble());
            found.push_back(std::min(dx, dy) / std::max(dx, dy));
        }
        return found;
    };
    const std::vector<double> askew = leans({});
    const std::vector<double> level = leans({"--deskew"});
    ASSERT_EQ(askew.size(), 4U);
    ASSERT_EQ(level.size(), 4U);
    for (const double lean : askew)
        EXPECT_NEAR(lean, 0.0524, 0.005);
    for (const double lean : level)
        EXPECT_LT(lean, 0.0005);
}
