// Runs the built program as a user does.

#include "support/program.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QXmlStreamReader>

#include <gtest/gtest.h>

#include <cstring>
#include <utility>

namespace {

class Ovtrace : public ProgramTest {};

QJsonObject json(const QByteArray& line) {
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(line, &error);
    EXPECT_EQ(error.error, QJsonParseError::NoError) << error.errorString().toStdString();
    return document.object();
}

} // namespace

TEST_F(Ovtrace, WritesJsonOfTheStatedForm) {
    const QString image = saveImage(blackSquareOnWhite(QImage::Format_RGB32), "square.png");
    const ProgramResult result = run({image, "-f", "json", "-o", "-", "--method", "outlines",
                                      "--set", "blurradius=0", "--palette", "#000000,#ffffff80"});
    ASSERT_EQ(result.status, 0) << result.errors.toStdString();
    EXPECT_TRUE(result.errors.isEmpty()) << result.errors.toStdString();
    EXPECT_EQ(result.output.count('\n'), 1) << "one object on one line";
    EXPECT_TRUE(result.output.startsWith("{\"width\":20,\"height\":16,\"palette\":[[0,0,0,255],"));
    const QJsonObject drawing = json(result.output);
    EXPECT_EQ(drawing.keys(), QStringList({"height", "palette", "polylines", "width"}));
    const QJsonArray polylines = drawing["polylines"].toArray();
    ASSERT_EQ(polylines.size(), 2);
    const QJsonObject outer = polylines[0].toObject();
    EXPECT_EQ(outer.keys(), QStringList({"layer", "segments", "start"}));
    EXPECT_EQ(outer["layer"].toInt(), 1);
    EXPECT_EQ(outer["start"].toArray(), QJsonArray({0.5, 16}));
    const QJsonObject square = polylines[1].toObject();
    EXPECT_EQ(square["layer"].toInt(), 0);
    EXPECT_EQ(square["start"].toArray(), QJsonArray({5.5, 12})) << "y points up";
    for (const QJsonValue value : square["segments"].toArray()) {
        const QJsonArray segment = value.toArray();
        EXPECT_EQ(segment.size(), segment[0].toString() == "L" ? 3 : 5);
    }
}

TEST_F(Ovtrace, WritesNonNumbersAsStrings) {
    // A negative line tolerance leaves exact lines without a control point.
    const QString image = saveImage(blackSquareOnWhite(QImage::Format_RGB32), "square.png");
    const ProgramResult result = run({image, "-f", "json", "-o", "-", "--set", "ltres=-1"});
    EXPECT_EQ(result.status, 0);
    EXPECT_TRUE(result.output.contains("[\"Q\",\"nan\",\"nan\","));
    EXPECT_FALSE(json(result.output).isEmpty());
    const ProgramResult svg = run({image, "-f", "svg", "-o", "-", "--set", "ltres=-1"});
    EXPECT_FALSE(svg.output.contains("nan"));
}

TEST_F(Ovtrace, WritesSvgInTheOrderOfTheList) {
    const QString image = saveImage(blackSquareOnWhite(QImage::Format_RGB32), "square.png");
    const ProgramResult result =
        run({image, "-o", "-", "--set", "blurradius=0", "--palette", "#000000,#ffffff"});
    ASSERT_EQ(result.status, 0) << result.errors.toStdString();
    QXmlStreamReader xml(result.output);
    QStringList fills;
    QString viewBox;
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement)
            continue;
        if (xml.name() == u"svg")
            viewBox = xml.attributes().value("viewBox").toString();
        if (xml.attributes().hasAttribute("fill"))
            fills.append(xml.attributes().value("fill").toString());
        if (xml.name() == u"path") {
            EXPECT_TRUE(xml.attributes().value("d").startsWith(u"M"));
            EXPECT_TRUE(xml.attributes().value("d").endsWith(u"Z"));
        }
    }
    EXPECT_FALSE(xml.hasError()) << xml.errorString().toStdString();
    EXPECT_EQ(viewBox, "0 0 20 16");
    EXPECT_EQ(fills, QStringList({"#ffffff", "#000000"}));
}

TEST_F(Ovtrace, ChoosesTheFormatByTheOutputsEnding) {
    const ProgramResult result = run({sample("logo.png"), "-o", path("logo.json")});
    ASSERT_EQ(result.status, 0) << result.errors.toStdString();
    EXPECT_TRUE(result.output.isEmpty());
    EXPECT_EQ(json(contents(path("logo.json")))["width"].toInt(), 480);
}

TEST_F(Ovtrace, WritesBesideTheImageWithoutAnOutput) {
    ASSERT_TRUE(QFile::copy(sample("logo.png"), path("a.b.png")));
    EXPECT_EQ(run({path("a.b.png")}).status, 0);
    EXPECT_EQ(files(), QStringList({"a.b.png", "a.b.svg"}));
}

TEST_F(Ovtrace, ResultsDoNotDependOnTheFilesBefore) {
    const ProgramResult alone = run({sample("photo.png"), "-f", "json", "-o", "-"});
    const ProgramResult both =
        run({sample("logo.png"), sample("photo.png"), "-f", "json", "-o", "-"});
    ASSERT_EQ(both.status, 0);
    EXPECT_EQ(both.output.count('\n'), 2);
    EXPECT_TRUE(both.output.endsWith('\n' + alone.output));
}

TEST_F(Ovtrace, BwReachesPaletteImages) {
    const QImage square = blackSquareOnWhite(QImage::Format_RGB32);
    const ProgramResult expected =
        run({saveImage(square, "rgb.png"), "--mode", "bw", "-f", "json", "-o", "-"});
    ASSERT_EQ(expected.status, 0);
    for (const auto format : {QImage::Format_Mono, QImage::Format_Indexed8}) {
        const QString image = saveImage(square.convertToFormat(format), "palette.png");
        ASSERT_EQ(QImage(image).format(), format);
        const ProgramResult result = run({image, "--mode", "bw", "-f", "json", "-o", "-"});
        EXPECT_EQ(result.output, expected.output);
        EXPECT_TRUE(result.errors.isEmpty()) << result.errors.toStdString();
    }
}

TEST_F(Ovtrace, RawLeavesImageAndDefaultsAlone) {
    const QImage square = blackSquareOnWhite(QImage::Format_RGB32);
    // The engine's defaults blacken everything that takes pixel colours ...
    const ProgramResult rgb =
        run({saveImage(square, "rgb.png"), "--mode", "raw", "-f", "json", "-o", "-"});
    EXPECT_EQ(json(rgb.output)["polylines"].toArray().size(), 1);
    // ... and leave a palette image as it is.
    const QString mono = saveImage(square.convertToFormat(QImage::Format_Mono), "mono.png");
    const ProgramResult raw = run({mono, "--mode", "raw", "-f", "json", "-o", "-"});
    EXPECT_GT(json(raw.output)["polylines"].toArray().size(), 1);
    EXPECT_TRUE(raw.errors.isEmpty()) << raw.errors.toStdString();
}

TEST_F(Ovtrace, SetComesAfterTheMode) {
    const ProgramResult result =
        run({sample("logo.png"), "--mode", "bw", "--set", "monochrome=0", "-f", "json", "-o", "-"});
    EXPECT_EQ(result.output,
              run({sample("logo.png"), "--method", "outlines", "-f", "json", "-o", "-"}).output);
}

TEST_F(Ovtrace, UsageErrors) {
    const QString image = sample("logo.png");
    expectError(run({}), 2, "no image");
    expectError(run({image, "--nonsense"}), 2, "nonsense");
    expectError(run({image, "--set", "numberofcolours=3"}), 2,
                "(did you mean \"numberofcolors\"?)");
    expectError(run({image, "--set", "Ltres=3"}), 2, "(did you mean \"ltres\"?)");
    expectError(run({image, "--set", "ltres"}), 2, "key=value");
    expectError(run({image, "--set", "ltres=soft"}), 2, "\"soft\"");
    expectError(run({image, "--set", "ltres="}), 2, "a number");
    expectError(run({image, "--mode", "grey"}), 2, "color, bw, raw");
    expectError(run({image, "-f", "dwg"}), 2, "svg, dxf, pdf, png, json, geojson");
    for (const QString colors :
         {"rouge", "#12345", "#1234567", "#ggg000", "", "#112233,", "#+12345"})
        expectError(run({image, "--palette", colors}), 2, "is not a colour");
    expectError(run({image, image, "-o", path("x.svg")}), 2, "one image");
    EXPECT_TRUE(files().isEmpty());
}

TEST_F(Ovtrace, FileErrorsLeaveNothingBehind) {
    const QString output = path("x.svg");
    expectError(run({path("missing.png"), "-o", output}), 1, "missing.png: no such file");
    expectError(run({folderPath(), "-o", output}), 1, "no images in this folder");
    writeFile(path("empty.png"), "");
    expectError(run({path("empty.png"), "-o", output}), 1, "the file is empty");
    writeFile(path("text.png"), "This is not a picture.\n");
    expectError(run({path("text.png"), "-o", output}), 1, "text.png: cannot be decoded");
    const QByteArray png = contents(sample("photo.png"));
    writeFile(path("cut.png"), png.left(30));
    expectError(run({path("cut.png"), "-o", output}), 1, "cut.png: cannot be decoded");
    EXPECT_FALSE(QFile::exists(output));
    expectError(run({sample("logo.png"), "-o", path("no/such/folder/x.svg")}), 1,
                "cannot be written");
    expectError(run({sample("logo.png"), "-o", folderPath()}), 1, "cannot be written");
    EXPECT_EQ(files(), QStringList({"cut.png", "empty.png", "text.png"}));
}

TEST_F(Ovtrace, TruncatedImagesAreAResultOrAnError) {
    const QByteArray png = contents(sample("photo.png"));
    const QImage photo(sample("photo.png"));
    ASSERT_TRUE(photo.save(path("photo.jpg")));
    const QByteArray jpeg = contents(path("photo.jpg"));
    for (const auto& [bytes, name] : {std::pair(png, "cut.png"), std::pair(jpeg, "cut.jpg")}) {
        for (const int percent : {1, 20, 50, 99}) {
            writeFile(path(name), bytes.left(bytes.size() * percent / 100));
            const ProgramResult result = run({path(name), "-o", path("cut.svg")});
            EXPECT_EQ(QFile::exists(path("cut.svg")), result.status == 0);
            EXPECT_EQ(result.errors.count('\n'), 1) << result.errors.toStdString();
            EXPECT_TRUE(result.status != 0 || result.errors.contains("ends too early"));
            QFile::remove(path("cut.svg"));
        }
    }
}

TEST_F(Ovtrace, OneBadImageLeavesACommonOutputUnwritten) {
    writeFile(path("old.json"), "old");
    expectError(run({sample("logo.png"), path("missing.png"), "-q", "-o", path("old.json")}), 1,
                "missing.png");
    EXPECT_EQ(contents(path("old.json")), "old");
}

TEST_F(Ovtrace, RefusesToReplaceTheImage) {
    ASSERT_TRUE(QFile::copy(sample("logo.png"), path("logo.png")));
    const QByteArray before = contents(path("logo.png"));
    expectError(run({path("logo.png"), "-f", "svg", "-o", path("logo.png")}), 1,
                "would replace the image");
    EXPECT_EQ(contents(path("logo.png")), before);
}

TEST_F(Ovtrace, UsesNamesThatAreNotAscii) {
    const QString name = path(QString::fromUtf8("prüfung – 図.png"));
    ASSERT_TRUE(QFile::copy(sample("logo.png"), name));
    EXPECT_EQ(run({name}).status, 0);
    EXPECT_TRUE(QFile::exists(path(QString::fromUtf8("prüfung – 図.svg"))));
}

TEST_F(Ovtrace, ReadsImagesBeyondTheUsualAllocationLimit) {
    // 36 megapixels are 144 MB as 32-bit pixels; the library refuses more than 128 on its own.
    QImage image(6000, 6000, QImage::Format_Grayscale8);
    image.fill(Qt::white);
    for (int y = 2000; y < 4000; ++y)
        std::memset(image.scanLine(y) + 2000, 0, 2000);
    const QString name = saveImage(image.convertToFormat(QImage::Format_RGB32), "large.png");
    const ProgramResult result = run({name, "-f", "json", "-o", "-"});
    ASSERT_EQ(result.status, 0) << result.errors.toStdString();
    EXPECT_GE(json(result.output)["paths"].toArray().size(), 2);
}

TEST_F(Ovtrace, ExplainsItself) {
    const ProgramResult help = run({"--help"});
    EXPECT_EQ(help.status, 0);
    EXPECT_TRUE(help.output.contains("--palette"));
    const ProgramResult version = run({"--version"});
    EXPECT_EQ(version.output.trimmed(), QByteArray("ovtrace " OVTRACE_VERSION));
}
