// Images whose files end too early: what is missing is blank, whatever memory held before.

#include "support/imagefiles.h"
#include "support/program.h"
#include "support/randominput.h"

#include <QDir>
#include <QFile>
#include <QImageWriter>
#include <QRegularExpression>

namespace {

class Truncated : public ProgramTest {
protected:
    /// The files to cut: one of each format that can be written here.
    QStringList makeWholeFiles() const {
        RandomInput input(90210);
        const QImage image = input.image(60).convertToFormat(QImage::Format_RGB32);
        QStringList names;
        for (const QByteArray& format : QImageWriter::supportedImageFormats()) {
            if (format == "jpg" || format == "tif" || format == "cur")
                continue; // other names of the same
            if (image.save(path("whole." + format), format.constData()))
                names.append("whole." + format);
        }
        const auto save = [&](const QImage& other, const QString& name) {
            EXPECT_TRUE(other.save(path(name)));
            names.append(name);
        };
        save(image.convertToFormat(QImage::Format_Indexed8), "table.bmp");
        save(image.convertToFormat(QImage::Format_Mono), "mono.bmp");
        QImage frame = image.convertToFormat(QImage::Format_Indexed8).copy();
        for (int y = 0; y < frame.height(); ++y) {
            for (int x = 0; x < frame.width(); ++x)
                frame.setPixel(x, y, static_cast<uint>((x * y / 7) & 1));
        }
        const auto write = [&](const QString& name, const QByteArray& bytes) {
            writeFile(path(name), bytes);
            names.append(name);
        };
        write("whole.gif", gifFile({frame}));
        write("drawn.tif", tiffFile({frame}));
        write("drawn.ico", icoFile({frame}));
        write("drawn.tga", tgaFile(image));
        return names;
    }
    /// Runs all images in the folder in one process whose memory begins as `perturbation` says.
    ProgramResult trace(const QString& out, int perturbation) const {
        return runProgram("/bin/sh",
                          {"-c", QString("MALLOC_PERTURB_=%1 '%2' '%3' --continue-on-error -f json "
                                         "--min-path 0 --set colorsampling=0 --name '{name}.{ext}' "
                                         "--output-dir '%4'")
                                     .arg(perturbation)
                                     .arg(OVTRACE_PROGRAM, path("cut"), path(out))});
    }
};

} // namespace

TEST_F(Truncated, WhatIsMissingIsBlankAndSaid) {
    ASSERT_TRUE(QDir().mkpath(path("cut")));
    const QStringList names = makeWholeFiles();
    ASSERT_GE(names.size(), 8);
    for (const QString& name : names) {
        const QByteArray whole = contents(path(name));
        for (int i = 1; i <= 16; ++i)
            writeFile(path(QString("cut/%1-%2").arg(i).arg(name)),
                      whole.left(whole.size() * i / 16));
    }
    const auto one = trace("one", 85);
    const auto other = trace("other", 200);
    const QStringList results = QDir(path("one")).entryList(QDir::Files);
    EXPECT_EQ(results, QDir(path("other")).entryList(QDir::Files));
    EXPECT_GT(results.size(), 40) << one.errors.toStdString();
    for (const QString& result : results)
        EXPECT_EQ(contents(path("one/" + result)), contents(path("other/" + result)))
            << result.toStdString();
    // All that is cut is refused or said to be cut; what is whole is neither.
    for (const QString& name : names) {
        for (int i = 1; i <= 16; ++i) {
            const QString cut = QString("/%1-%2: ").arg(i).arg(name);
            const bool isNamed = one.errors.contains(cut.toUtf8());
            if (i == 16) {
                EXPECT_FALSE(isNamed) << cut.toStdString() << '\n' << one.errors.toStdString();
            } else if (i < 15) { // the last bytes of some formats are of no account
                EXPECT_TRUE(isNamed || name.endsWith("xbm")) << cut.toStdString();
            }
        }
    }
}

TEST_F(Truncated, StrictRefusesThem) {
    RandomInput input(81);
    const QImage image = input.image(60).convertToFormat(QImage::Format_RGB32).scaled(200, 200);
    for (const QString name : {"a.bmp", "a.jpg"}) {
        const QString file = saveImage(image, name);
        EXPECT_EQ(run({file, "--strict", "-o", path("a.svg")}).status, 0);
        const QByteArray whole = contents(file);
        writeFile(file, whole.left(whole.size() * 7 / 8));
        QFile::remove(path("a.svg"));
        expectError(run({file, "--strict", "-o", path("a.svg")}), 1,
                    name.toUtf8() + ": the file ends too early");
        EXPECT_FALSE(QFile::exists(path("a.svg")));
        const auto traced = run({file, "-o", path("a.svg")});
        EXPECT_EQ(traced.status, 0);
        EXPECT_TRUE(traced.errors.contains("what is missing is blank"));
        EXPECT_EQ(run({file, "-q", "-o", path("a.svg")}).errors, "");
    }
}

TEST_F(Truncated, AHeadersPromiseIsNoReasonForWork) {
    // A bitmap of one bit a pixel and an anymap, of 16,000 x 16,000 pixels in 1.8 KB.
    const QByteArray bitmap = QByteArray::fromHex("424d0000000000000000"
                                                  "3e000000"
                                                  "28000000"
                                                  "803e0000803e0000"
                                                  "01000100"
                                                  "000000000000000000000000000000000200000000000000"
                                                  "00000000ffffff00");
    writeFile(path("huge.bmp"), bitmap + QByteArray(1800, 'x'));
    writeFile(path("huge.ppm"), "P6 16000 16000 255\n" + QByteArray(1800, 'x'));
    for (const QString name : {"huge.bmp", "huge.ppm"})
        expectError(run({path(name), "-o", path("a.svg")}), 1,
                    "its header promises 16000 x 16000 pixels, for which its 18");
}
