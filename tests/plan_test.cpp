// What a run finds, how it names its results, and what it never replaces.

#include "support/imagefiles.h"
#include "support/program.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QXmlStreamReader>

namespace {

class Plan : public ProgramTest {
protected:
    QString square(const QString& name) const {
        EXPECT_TRUE(QDir().mkpath(QFileInfo(path(name)).path()));
        return saveImage(blackSquareOnWhite(QImage::Format_RGB32), name);
    }
    QStringList filesIn(const QString& folder) const {
        return QDir(path(folder)).entryList(QDir::Files, QDir::Name);
    }
    /// Runs the program and expects nothing in the folder to change.
    void expectRefused(const QStringList& words, const QByteArray& mention,
                       const QByteArray& input = {}) const {
        const QStringList before = files();
        QList<QByteArray> bytes;
        for (const QString& name : before)
            bytes.append(contents(path(name)));
        expectError(run(words, input), 1, mention);
        EXPECT_EQ(files(), before);
        for (qsizetype i = 0; i < before.size(); ++i)
            EXPECT_EQ(contents(path(before[i])), bytes[i]) << before[i].toStdString();
    }
};

} // namespace

TEST_F(Plan, ImagesAreNeverReplaced) {
    const QString a = square("a.png");
    const QString b = square("b.png");
    expectRefused({a, b, "-f", "json", "-o", b}, "b.png: the result would replace the image");
    expectRefused({a, b, "-f", "png", "--name", "b"}, "would both be written");
    expectRefused({a, "--save-settings", b}, "b.png: the settings would replace an image");
    expectRefused({a, "--save-settings", a}, "the settings would replace the image");
    expectRefused({a, "-o", path("r.svg"), "--save-settings", path("r.svg")},
                  "settings and a result");
    expectError(run({"--print-settings", "--save-settings", b}), 1, "would replace an image");
}

TEST_F(Plan, ALaterImageIsSafeFromTheNameOfAnEarlierResult) {
    square("x.jpg");
    square("y.png");
    ASSERT_TRUE(QFile::rename(path("y.png"), path("x-1.png")));
    expectRefused({path("x.jpg"), path("x-1.png"), "-f", "png", "--name", "x-{n}", "--overwrite"},
                  "the result would replace the image");
    // Another way to the same file.
#ifndef Q_OS_WIN
    ASSERT_TRUE(QFile::link("x-1.png", path("link.svg")));
    expectRefused({path("x-1.png"), "-o", path("link.svg")}, "would replace the image");
#endif
}

TEST_F(Plan, TheStandardInputsFileIsNotReplaced) {
#ifdef Q_OS_WIN
    GTEST_SKIP() << "there the standard input has no name";
#else
    const QByteArray before = contents(square("a.png"));
    const auto result =
        runProgram("/bin/sh", {"-c", "'" OVTRACE_PROGRAM "' - -o '" + path("a.png") + "' < '" +
                                         path("a.png") + "'"});
    expectError(result, 1, "would replace the image the standard input");
    EXPECT_EQ(contents(path("a.png")), before);
#endif
}

TEST_F(Plan, AResultOfAnImagesKindReplacesAFileOnlyWhenTold) {
    const QString image = square("d.jpg");
    square("d.png");
    expectRefused({image, "-f", "png"}, "d.png: is there already and may be an image");
    EXPECT_EQ(run({image, "-f", "png", "--overwrite"}).status, 0);
    EXPECT_EQ(run({image, "-o", path("d.png")}).status, 0);
    writeFile(path("d.svg"), "old");
    EXPECT_EQ(run({image}).status, 0) << "an older result is replaced";
    EXPECT_GT(contents(path("d.svg")).size(), 100);
}

TEST_F(Plan, EndingsJoinTheNamesWhereTwoCollide) {
    square("a.png");
    square("a.bmp");
    square("b.png");
    for (const QString jobs : {"1", "2"}) {
        const QString out = path("out" + jobs);
        EXPECT_EQ(run({folderPath(), "--output-dir", out, "-j", jobs, "-q"}).status, 0);
        EXPECT_EQ(QDir(out).entryList(QDir::Files),
                  QStringList({"a.bmp.svg", "a.png.svg", "b.svg"}));
    }
    // A joined name may be another image's.
    square("a.png.bmp");
    EXPECT_EQ(run({folderPath(), "--output-dir", path("more"), "-q"}).status, 0);
    EXPECT_EQ(filesIn("more"), QStringList({"a.bmp.svg", "a.png.bmp.svg", "a.png.svg", "b.svg"}));
}

TEST_F(Plan, TemplatesHaveEndingsAndNumbers) {
    square("in/a.png");
    square("in/{n}.bmp");
    EXPECT_EQ(
        run({path("in"), "--output-dir", path("out"), "-q", "--name", "{n}-{name}-{ext}"}).status,
        0);
    EXPECT_EQ(filesIn("out"), QStringList({"1-a-png.svg", "2-{n}-bmp.svg"}))
        << "words in an image's name stay as they are";
    for (int i = 0; i < 9; ++i)
        square(QString("in/more%1.png").arg(i));
    EXPECT_EQ(run({path("in"), "--output-dir", path("many"), "-q", "--name", "{n}"}).status, 0);
    EXPECT_TRUE(filesIn("many").contains("01.svg"));
    EXPECT_TRUE(filesIn("many").contains("11.svg"));
    expectError(run({path("in"), "--name", "{nmae}"}), 2, "not {nmae}");
}

TEST_F(Plan, FoldersInFoldersKeepTheirPlaces) {
    square("in/a.png");
    square("in/below/a.png");
    square("in/below/deep/b.png");
    const auto flat = run({path("in"), "--output-dir", path("flat")});
    EXPECT_EQ(flat.status, 0);
    EXPECT_TRUE(flat.errors.contains("below: a folder, into which --recursive goes"))
        << flat.errors.toStdString();
    EXPECT_EQ(filesIn("flat"), QStringList("a.svg"));
    // The results' own folder is no place for images.
    const auto deep = run({path("in"), "--recursive", "--output-dir", path("in/out"), "-f", "png"});
    EXPECT_EQ(deep.status, 0) << deep.errors.toStdString();
    EXPECT_TRUE(deep.errors.endsWith("3 results\n")) << deep.errors.toStdString();
    EXPECT_TRUE(QFile::exists(path("in/out/a.png")));
    EXPECT_TRUE(QFile::exists(path("in/out/below/a.png")));
    EXPECT_TRUE(QFile::exists(path("in/out/below/deep/b.png")));
    const auto again =
        run({path("in"), "--recursive", "--output-dir", path("in/out"), "-f", "png"});
    expectError(again, 1, "is there already");
}

TEST_F(Plan, WhatIsSkippedIsSaidAndCounted) {
    square("in/a.png");
    writeFile(path("in/empty.jpg"), "");
    writeFile(path("in/broken.gif"), "no picture");
    writeFile(path("in/notes.txt"), "notes");
    writeFile(path("in/more.txt"), "notes");
    const auto result = run({path("in")});
    EXPECT_EQ(result.status, 0);
    for (const char* line :
         {"skipped .*empty.jpg: the file is empty", "skipped .*broken.gif: is broken",
          "skipped 2 files whose names are no pictures'"})
        EXPECT_TRUE(QString::fromUtf8(result.errors).contains(QRegularExpression(line)))
            << line << '\n'
            << result.errors.toStdString();
    EXPECT_TRUE(result.errors.endsWith("\n1 result, 4 skipped\n")) << result.errors.toStdString();
    EXPECT_EQ(run({path("in"), "-q"}).errors, "");
    ASSERT_TRUE(QFile::remove(path("in/a.png")));
    expectError(run({path("in"), "-q"}), 1, "no images in this folder");
}

TEST_F(Plan, PagesAreTakenByRange) {
    const QImage page = blackSquareOnWhite(QImage::Format_RGB32);
    writeFile(path("a.ico"),
              icoFile({page.scaled(16, 16), page.scaled(17, 17), page.scaled(18, 18)}));
    const auto widths = [&](const QString& pages) {
        const auto result =
            run({path("a.ico"), "--page", pages, "-f", "json", "-o", "-", "--min-path", "0"});
        QStringList found;
        for (const QByteArray& line : result.output.trimmed().split('\n'))
            found.append(line.mid(9, 2));
        return found.join(' ');
    };
    EXPECT_EQ(widths("all"), "16 17 18");
    EXPECT_EQ(widths("2-"), "17 18");
    EXPECT_EQ(widths("3,1-2"), "16 17 18");
    EXPECT_EQ(widths("1-2,2"), "16 17");
    const auto result = run({path("a.ico"), "--page", "all", "--output-dir", path("out")});
    EXPECT_TRUE(result.errors.contains("a.ico page 2 of 3 -> ")) << result.errors.toStdString();
    EXPECT_EQ(filesIn("out"), QStringList({"a-1.svg", "a-2.svg", "a-3.svg"}));
    EXPECT_EQ(run({path("a.ico"), "--page", "2-3", "--output-dir", path("two"), "-j", "2", "--name",
                   "p{page}"})
                  .status,
              0);
    EXPECT_EQ(filesIn("two"), QStringList({"p2.svg", "p3.svg"}));
    expectError(run({path("a.ico"), "--page", "2-9", "-q", "--output-dir", path("x")}), 1,
                "has no page 4");
    for (const QString wrong : {"0", "3-2", "a", "1,,2", "-3", ""})
        expectError(run({path("a.ico"), "--page", wrong}), 2, "--page takes");
    expectError(run({path("a.ico"), "--page", "all", "-o", path("x.svg")}), 2, "one image alone");
}

TEST_F(Plan, ControlCharactersInNamesBreakNothing) {
#ifdef Q_OS_WIN
    GTEST_SKIP() << "names have none there";
#else
    const QString image = square("a\x01\x1b[31m\n\"<&>\t.png");
    for (const QString format : {"svg", "dxf", "pdf", "png", "json", "geojson"}) {
        const auto result = run({image, "-f", format, "-o", "-"});
        EXPECT_EQ(result.status, 0);
        for (const char character : {'\x01', '\x1b'}) {
            if (format != "pdf" && format != "png") {
                EXPECT_FALSE(result.output.contains(character)) << format.toStdString();
            }
        }
        if (format == "svg") {
            QXmlStreamReader xml(result.output);
            while (!xml.atEnd())
                xml.readNext();
            EXPECT_FALSE(xml.hasError()) << xml.errorString().toStdString();
        }
    }
    expectError(run({image + "none"}), 1, "no such file");
    const auto table = run({image, "--stats", "table", "-o", path("x.svg")});
    EXPECT_EQ(table.output.count('\n'), 2) << table.output.toStdString();
#endif
}
