// Many images in one run, and what can go wrong with them.

#include "support/program.h"
#include "support/randominput.h"

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>

#ifdef Q_OS_WIN
#include <windows.h>
#else
#include <csignal>
#endif

namespace {

class Batch : public ProgramTest {
protected:
    /// Images a00.png ... in a folder of their own.
    QString makeImages(int count) const {
        RandomInput input(20272);
        QString images = path("images");
        EXPECT_TRUE(QDir().mkpath(images));
        for (int i = 0; i < count; ++i)
            EXPECT_TRUE(
                input.image(40).save(QString("%1/a%2.png").arg(images).arg(i, 3, 10, QChar('0'))));
        return images;
    }
    static QStringList filesIn(const QString& folder) {
        return QDir(folder).entryList(QDir::Files, QDir::Name);
    }
};

} // namespace

TEST_F(Batch, TwoWorkersGiveTheBytesOfOneByOne) {
    const QString images = makeImages(100);
    const auto together =
        run({images, "--output-dir", path("together"), "-j", "2", "--min-path", "0"});
    EXPECT_EQ(together.status, 0) << together.errors.toStdString();
    EXPECT_EQ(together.errors.count(" -> "), 100);
    EXPECT_EQ(filesIn(path("together")).size(), 100);
    ASSERT_TRUE(QDir().mkpath(path("alone")));
    for (const QString& name : filesIn(images)) {
        const QString result = QString(name).replace(".png", ".svg");
        ASSERT_EQ(
            run({images + '/' + name, "--min-path", "0", "-o", path("alone/" + result)}).status, 0);
        ASSERT_EQ(contents(path("alone/" + result)), contents(path("together/" + result)));
    }
}

TEST_F(Batch, NamesFollowTheTemplate) {
    const QString images = makeImages(2);
    EXPECT_EQ(
        run({images, "--output-dir", path("out"), "--name", "{name}-{format}-{page}", "-f", "json"})
            .status,
        0);
    EXPECT_EQ(filesIn(path("out")), QStringList({"a000-json-1.json", "a001-json-1.json"}));
    expectError(run({images, "--name", "same"}), 1, "would both be written");
    expectError(run({images, "--name", "a/b"}), 2, "--name takes");
}

TEST_F(Batch, QuietSaysNothing) {
    const auto result = run({makeImages(3), "-q"});
    EXPECT_EQ(result.status, 0);
    EXPECT_TRUE(result.errors.isEmpty()) << result.errors.toStdString();
}

TEST_F(Batch, GoesOnAfterAFailureWhenTold) {
    const QString images = makeImages(5);
    writeFile(images + "/a001.png", contents(images + "/a001.png").left(20));
    const QStringList files{images + "/a000.png", images + "/a001.png", images + "/a002.png"};
    for (const QString jobs : {"1", "2"}) {
        const QString out = path("out" + jobs);
        const auto goingOn = run(QStringList(files)
                                 << "--output-dir" << out << "-j" << jobs << "--continue-on-error");
        EXPECT_EQ(goingOn.status, 1);
        EXPECT_EQ(filesIn(out), QStringList({"a000.svg", "a002.svg"}));
        EXPECT_EQ(goingOn.errors.count("ovtrace: "), 1) << goingOn.errors.toStdString();
        const auto stopping = run(QStringList(files)
                                  << "--output-dir" << path("stop" + jobs) << "-j" << jobs << "-q");
        expectError(stopping, 1, "a001.png: cannot be decoded");
    }
}

TEST_F(Batch, StatisticsComeInTheOrderOfTheImages) {
    const QString images = makeImages(8);
    const auto result =
        run({images, "--output-dir", path("out"), "-j", "2", "--stats", "json", "-q"});
    ASSERT_EQ(result.output.count('\n'), 8);
    int i = 0;
    for (const QByteArray& line : result.output.trimmed().split('\n')) {
        const QJsonObject figures = QJsonDocument::fromJson(line).object();
        EXPECT_TRUE(figures["image"].toString().endsWith(QString("a00%1.png").arg(i++)));
        EXPECT_EQ(figures["nodes"].toInt(), figures["lines"].toInt() + figures["arcs"].toInt() +
                                                figures["circles"].toInt() +
                                                figures["curves"].toInt());
        EXPECT_GT(figures["peakMemory"].toDouble(), 1e6);
        EXPECT_GE(figures["meanDifference"].toDouble(), 0.0);
    }
    const auto table =
        run({images, "--output-dir", path("out"), "-j", "2", "--stats", "table", "-q"});
    EXPECT_EQ(table.output.count('\n'), 9) << "one heading";
}

TEST_F(Batch, FitIsZeroForAResultThatIsTheImage) {
    // The outline along the border slants by half a pixel; less than a pixel of a hundred sees it.
    QImage image(1000, 1000, QImage::Format_RGB32);
    image.fill(QColor(10, 200, 30));
    const auto result =
        run({saveImage(image, "plain.png"), "--stats", "json", "--method", "outlines"});
    const QJsonObject figures = QJsonDocument::fromJson(result.output).object();
    EXPECT_LT(figures["meanDifference"].toDouble(), 2.0);
    EXPECT_EQ(figures["difference99"].toInt(), 0) << result.output.toStdString();
    EXPECT_EQ(figures["outlines"].toInt(), 1);
}

TEST_F(Batch, StandardInputGoesToStandardOutput) {
    const auto piped = run({"-", "-f", "json"}, contents(sample("logo.png")));
    EXPECT_EQ(piped.output, run({sample("logo.png"), "-f", "json", "-o", "-"}).output);
    expectError(run({"-"}, ""), 1, "standard input is empty");
    expectError(run({"-"}, "no picture"), 1, "cannot be decoded");
    expectError(run({"-", sample("logo.png")}), 2, "standard input is one image");
}

TEST_F(Batch, EmptyResultsAreValidAndToldApart) {
    const QString image = saveImage(blackSquareOnWhite(QImage::Format_RGB32), "square.png");
    for (const QString format : {"svg", "dxf", "pdf", "png", "json", "geojson"}) {
        const QString file = path("empty." + format);
        const auto result = run({image, "-o", file, "--min-path", "1000"});
        EXPECT_EQ(result.status, 3) << format.toStdString();
        EXPECT_TRUE(result.errors.contains("nothing was traced")) << result.errors.toStdString();
        EXPECT_TRUE(result.errors.contains("--min-path")) << "the option to change";
        EXPECT_GT(contents(file).size(), 40);
    }
    EXPECT_EQ(run({image, image, "-f", "json", "-o", "-", "-j", "2", "--min-path", "1000"}).status,
              3);
}

TEST_F(Batch, LimitsAreRefusedBeforeTheWork) {
    const QString image = sample("logo.png");
    expectError(run({image, "-o", path("x.svg"), "--max-pixels", "1000"}), 1, "--max-pixels");
    // The header of a bitmap alone, of 900 megapixels.
    writeFile(path("huge.pbm"), "P4\n30000 30000\n");
    expectError(run({path("huge.pbm")}), 1, "30000 x 30000 pixels are more than 400000000");
    EXPECT_EQ(files(), QStringList({"huge.pbm"}));
}

TEST_F(Batch, ReadsByContentAndNotByName) {
    ASSERT_TRUE(QFile::copy(sample("logo.png"), path("logo.txt")));
    EXPECT_EQ(run({path("logo.txt"), "-o", path("a.json")}).status, 0);
    // Drawings and documents are no pictures, though the library may read them.
    writeFile(path("drawing.png"),
              "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"9\" height=\"9\"/>");
    expectError(run({path("drawing.png"), "-o", path("b.svg")}), 1, "cannot be decoded");
}

TEST_F(Batch, CropsAndFlattens) {
    QImage image(30, 20, QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    for (int y = 5; y < 15; ++y) {
        for (int x = 5; x < 25; ++x)
            image.setPixel(x, y, qRgba(255, 0, 0, 255));
    }
    const QString name = saveImage(image, "a.png");
    QImage flat = image.convertToFormat(QImage::Format_RGB32);
    for (int y = 0; y < 20; ++y) {
        for (int x = 0; x < 30; ++x) {
            if (qAlpha(image.pixel(x, y)) == 0)
                flat.setPixel(x, y, qRgb(0, 0, 255));
        }
    }
    EXPECT_EQ(run({name, "--background", "#0000ff", "-f", "json", "-o", "-"}).output,
              run({saveImage(flat, "flat.png"), "-f", "json", "-o", "-"}).output);
    EXPECT_EQ(run({name, "--crop", "5,5,10,8", "-f", "json", "-o", "-"}).output,
              run({saveImage(image.copy(5, 5, 10, 8), "cut.png"), "-f", "json", "-o", "-"}).output);
    expectError(run({name, "--crop", "5,5,100,8"}), 1, "within its 30 x 20 pixels");
    expectError(run({name, "--crop", "5,5"}), 2, "x,y,width,height");
}

TEST_F(Batch, TurnsTheImageAsItsCameraSaysIt) {
    // The orientation "rotated by a quarter" as the first segment of a JPEG file.
    QImage image(24, 16, QImage::Format_RGB32);
    image.fill(Qt::white);
    for (int y = 0; y < 8; ++y) {
        for (int x = 0; x < 8; ++x)
            image.setPixel(x, y, qRgb(0, 0, 0));
    }
    QBuffer jpeg;
    jpeg.open(QIODevice::WriteOnly);
    ASSERT_TRUE(image.save(&jpeg, "JPEG", 100));
    const QByteArray orientation = QByteArray::fromHex(
        "ffe1002245786966000049492a000800000001001201030001000000060000000000000000");
    writeFile(path("turned.jpg"), QByteArray(jpeg.data()).insert(2, orientation.left(36)));
    const auto result = run({path("turned.jpg"), "-f", "json", "-o", "-"});
    EXPECT_TRUE(result.output.startsWith("{\"width\":16,\"height\":24,"))
        << result.errors.toStdString();
}

TEST_F(Batch, PathsOfEveryKind) {
    // Longer than the 260 characters that Windows once allowed.
    QString folder = path("long");
    while (folder.size() < 300)
        folder += "/a folder with a rather long name";
    ASSERT_TRUE(QDir().mkpath(folder));
    ASSERT_TRUE(QFile::copy(sample("logo.png"), folder + "/logo.png"));
    EXPECT_EQ(run({folder + "/logo.png"}).status, 0);
    EXPECT_TRUE(QFile::exists(folder + "/logo.svg"));
#ifdef Q_OS_WIN
    const QString native = QDir::toNativeSeparators(path("logo.png"));
    ASSERT_EQ(native[1], ':') << "a drive's letter";
    ASSERT_TRUE(QFile::copy(sample("logo.png"), native));
    EXPECT_EQ(run({native, "-o", native + ".svg"}).status, 0);
    EXPECT_EQ(run({"\\\\?\\" + native, "-o", path("unc.svg")}).status, 0);
    EXPECT_EQ(contents(path("unc.svg")), contents(native + ".svg"));
#endif
}

TEST_F(Batch, AnOutputThatIsInUseIsAnError) {
#ifdef Q_OS_WIN
    const QString name = QDir::toNativeSeparators(path("locked.svg"));
    writeFile(name, "old");
    const HANDLE lock = CreateFileW(reinterpret_cast<const wchar_t*>(name.utf16()), GENERIC_READ, 0,
                                    nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    ASSERT_NE(lock, INVALID_HANDLE_VALUE);
    expectError(run({sample("logo.png"), "-o", name}), 1, "cannot be written");
    CloseHandle(lock);
    EXPECT_EQ(contents(name), "old");
#else
    GTEST_SKIP() << "files are locked on Windows alone";
#endif
}

TEST_F(Batch, AnInterruptLeavesNoPartOfAFile) {
#ifdef Q_OS_WIN
    GTEST_SKIP() << "a program under another system's control cannot be sent the keys";
#else
    RandomInput input(20273);
    QImage image(1500, 1500, QImage::Format_RGB32);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            image.setPixel(x, y, static_cast<QRgb>(input.number(0, 0xffffff)));
    }
    const QString name = saveImage(image, "noise.bmp");
    int interrupted = 0;
    for (int milliseconds = 100; milliseconds <= 1000; milliseconds += 150) {
        QProcess process;
        process.start(OVTRACE_PROGRAM, {name, "-o", path("noise.dxf"), "--min-path", "0"});
        ASSERT_TRUE(process.waitForStarted());
        if (!process.waitForFinished(milliseconds)) {
            ::kill(static_cast<pid_t>(process.processId()), SIGINT);
            ASSERT_TRUE(process.waitForFinished());
        }
        if (process.exitStatus() == QProcess::CrashExit) {
            ++interrupted;
            EXPECT_EQ(files(), QStringList("noise.bmp"));
        }
        QFile::remove(path("noise.dxf"));
    }
    EXPECT_GT(interrupted, 1);
#endif
}

TEST_F(Batch, TextHasTheSameLineEndsEverywhere) {
    for (const QString format : {"svg", "dxf", "json", "geojson"}) {
        EXPECT_FALSE(run({sample("logo.png"), "-f", format, "-o", "-"}).output.contains('\r'));
        EXPECT_EQ(run({sample("logo.png"), "-f", format, "-o", path("a." + format)}).status, 0);
        EXPECT_FALSE(contents(path("a." + format)).contains('\r'));
    }
}

TEST_F(Batch, SettingsAreSavedAndRead) {
    const QStringList options{"--mode",      "bw",        "--set",     "brightnessthreshold=90",
                              "--set",       "ltres=0.5", "--palette", "#102030,#ffffff80",
                              "--threshold", "local"};
    const auto direct = run(QStringList{sample("photo.png"), "-f", "json", "-o", "-",
                                        "--save-settings", path("s.json")} +
                            options);
    const auto again =
        run({sample("photo.png"), "-f", "json", "-o", "-", "--settings", path("s.json")});
    EXPECT_EQ(again.output, direct.output);
    const auto printed = run(QStringList{"--print-settings", "-f", "json"} + options);
    EXPECT_EQ(printed.output, contents(path("s.json")));
    const auto values = QJsonDocument::fromJson(printed.output).object()["options"].toObject();
    EXPECT_EQ(values.size(), 14);
    EXPECT_EQ(values["brightnessthreshold"].toDouble(), 90.0);
    writeFile(path("bad.json"), "{\"options\":{\"ltress\":1}}");
    expectError(run({sample("logo.png"), "--settings", path("bad.json")}), 2,
                "did you mean \"ltres\"");
    expectError(run({sample("logo.png"), "--settings", path("none.json")}), 1, "cannot be read");
}

TEST_F(Batch, ValuesAreCheckedAndTheRangeNamed) {
    const QString image = sample("logo.png");
    expectError(run({image, "--colors", "0"}), 2, "from 1 to 4096");
    expectError(run({image, "--method", "outlines", "--colors", "0"}), 2, "from 1 to 65536");
    expectError(run({image, "--blur", "nan"}), 2, "from 0 to 5");
    expectError(run({image, "--set", "mincolorratio=2"}), 2, "from 0 to 1");
    expectError(run({image, "--jobs", "0"}), 2, "--jobs takes");
    expectError(run({image, "--stats", "json", "-o", "-"}), 2, "cannot both go");
    expectError(run({image, "--preset", "cat"}), 2,
                "logo, drawing, plan, scan, map, pixelart, photo");
    expectError(run({image, "--width", "12"}), 2, "with its unit");
    expectError(run({image, "--width", "1in", "--dpi", "30"}), 2, "give one of");
    expectError(run({image, "-f", "dxf", "--units", "mm"}), 2, "--units needs");
    expectError(run({image, "-f", "dxf", "--dxf-version", "r12", "--dxf-curves", "spline"}), 2,
                "R12 has no splines");
}

TEST_F(Batch, NothingIsIgnored) {
    const QString image = sample("logo.png");
    const QList<QPair<QStringList, QByteArray>> unread{
        {{"-f", "dxf", "--scale", "2"}, "--scale is for png; the format is dxf"},
        {{"-f", "pdf", "--outline"}, "--outline is for svg; the format is pdf"},
        {{"-f", "dxf", "--fill"}, "--fill is for svg; the format is dxf"},
        {{"--overlay"}, "--overlay is for png; the format is svg"},
        {{"--set", "brightnessthreshold=90"},
         "\"brightnessthreshold\" is for bw and raw; the mode is color"},
        {{"--set", "scale=2"}, "\"scale\" is for png; the format is svg"},
        {{"-f", "json", "--dpi", "300"}, "the format is json"},
        {{"-f", "pdf", "--margin", "3mm"}, "--margin needs --paper"},
        {{"--outline", "--close-seams"}, "--close-seams has no effect with --outline"},
        {{"-o", "x.svg", "--name", "{name}"}, "--output and --name"},
    };
    for (const auto& [options, message] : unread)
        expectError(run(QStringList{image} + options), 2, message);
    // A settings file serves several formats: what one does not read is told.
    writeFile(path("house.json"), "{\"scale\":2,\"mode\":\"BW\"}");
    const auto result =
        run({image, "-f", "dxf", "-o", path("a.dxf"), "--settings", path("house.json")});
    EXPECT_EQ(result.status, 0);
    EXPECT_TRUE(result.errors.contains("house.json: \"scale\" is for png; the format is dxf"));
    writeFile(path("list.json"), "[]");
    expectError(run({image, "--settings", path("list.json")}), 2,
                "list.json: settings are an object");
}

TEST_F(Batch, ResolutionsAreNotInvented) {
    QImage image = blackSquareOnWhite(QImage::Format_RGB32);
    for (const char* name : {"a.ppm", "a.xpm"}) {
        expectError(run({saveImage(image, name), "--dpi", "auto"}), 1,
                    QByteArray(name) + ": does not say how large it is");
    }
    image.setDotsPerMeterX(10000);
    image.setDotsPerMeterY(10000);
    const auto svg = run({saveImage(image, "b.png"), "-o", "-", "--dpi", "AUTO"});
    EXPECT_TRUE(svg.output.contains("width=\"2mm\"")) << svg.output.left(200).toStdString();
}

TEST_F(Batch, TellsAboutItselfAndItsModule) {
    for (const char* key :
         {"monochrome", "usebrightness", "brightnessthreshold", "usealpha", "alphathreshold",
          "numberofcolors", "colorsampling", "blurradius", "blurdelta", "colorquantcycles",
          "mincolorratio", "pathomit", "ltres", "qtres"})
        EXPECT_TRUE(run({"--list-options"}).output.contains(key)) << key;
    EXPECT_TRUE(run({"--list-presets"}).output.contains("pixelart"));
    EXPECT_TRUE(run({"--list-formats"}).output.contains("geojson"));
    const QJsonObject facts = QJsonDocument::fromJson(run({"--plugin-info"}).output).object();
    EXPECT_EQ(facts["metadata"].toObject()["className"].toString(), "OvTracePlugin");
    EXPECT_EQ(facts["information"].toObject()["ID"].toString(), "TRACE");
    EXPECT_EQ(run({"--plugin-info", "--plugin", facts["file"].toString()}).output,
              run({"--plugin-info"}).output);
    expectError(run({"--plugin-info", "--plugin", path("none.so")}), 1,
                "cannot load the tracing module");
    const auto manual = run({"--generate", "man"}).output;
    const auto completion = run({"--generate", "bash"}).output;
    for (const char* option : {"output", "preset", "threshold", "deviation", "stats"}) {
        EXPECT_TRUE(manual.contains(QByteArray("\\fB\\-\\-") + option)) << option;
        EXPECT_TRUE(completion.contains(QByteArray("--") + option)) << option;
    }
}
