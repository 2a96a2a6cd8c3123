// Promises about memory: limits are known, and what would go beyond them is refused in a sentence.

#include "support/program.h"
#include "support/randominput.h"

#include <drawing/memorylimit.h>

#include <QDir>
#include <QFileInfo>
#include <QJsonDocument>

#include <vector>

namespace {

class Memory : public ProgramTest {
protected:
    QString write(const QString& name, const QByteArray& text) const {
        EXPECT_TRUE(QDir().mkpath(QFileInfo(path(name)).path()));
        writeFile(path(name), text);
        return path(name);
    }
    /// Runs the program with an address space of so many megabytes.
    ProgramResult runWithin(int megabytes, const QString& words) const {
        return runProgram(
            "/bin/sh",
            {"-c",
             QString("ulimit -v %1; '%2' %3").arg(megabytes * 1000).arg(OVTRACE_PROGRAM, words)});
    }
    QString noise(int side) const {
        RandomInput input(555);
        QImage image(side, side, QImage::Format_RGB32);
        for (int y = 0; y < side; ++y) {
            for (int x = 0; x < side; ++x)
                image.setPixel(x, y, static_cast<QRgb>(input.number(0, 0xffffff)));
        }
        return saveImage(image, "noise.bmp");
    }
};

} // namespace

TEST_F(Memory, LimitsOfControlGroupsAreFound) {
    const QString root = path("cgroup");
    const QString none = write("none", "0::/\n");
    ASSERT_TRUE(QDir().mkpath(root));
    EXPECT_EQ(controlGroupLimit(none, root), 0.0);
    EXPECT_EQ(controlGroupLimit(path("missing"), root), 0.0);
    // Version 2: the group's own, or a smaller one above it.
    const QString process = write("v2", "0::/user/app.slice\n");
    write("cgroup/user/app.slice/memory.max", "max\n");
    EXPECT_EQ(controlGroupLimit(process, root), 0.0);
    write("cgroup/user/memory.max", "3000000\n");
    EXPECT_EQ(controlGroupLimit(process, root), 3e6);
    write("cgroup/user/app.slice/memory.max", "2000000\n");
    EXPECT_EQ(controlGroupLimit(process, root), 2e6);
    // Version 1, whose group may lie beyond what is mounted.
    const QString old = write("v1", "5:cpu:/x\n4:cpuset,memory:/job/a:b\n");
    write("cgroup/memory/memory.limit_in_bytes", "9223372036854771712\n");
    EXPECT_EQ(controlGroupLimit(old, root), 0.0);
    write("cgroup/memory/job/memory.limit_in_bytes", "7000000\n");
    EXPECT_EQ(controlGroupLimit(old, root), 7e6);
    EXPECT_GT(memoryLimit(), 1e8);
    EXPECT_DOUBLE_EQ(memoryLimit(4), memoryLimit() / 4.0) << "no limit of the address space here";
}

TEST_F(Memory, WhatWouldNotFitIsRefusedInASentence) {
#ifdef OVTRACE_SANITIZED
    GTEST_SKIP() << "the sanitizers' own memory is beyond any limit";
#endif
    const QString name = noise(2500);
    const QString words = "'" + name + "' --min-path 0 --colors 256 -o '" + path("a.svg") + "'";
    expectError(runWithin(600, words), 1, "noise.bmp: tracing 2500 x 2500 pixels would take about");
    EXPECT_EQ(files(), QStringList("noise.bmp"));
    // A part of it fits, and so does a drawing of that size.
    EXPECT_EQ(runWithin(600, words + " --crop 0,0,800,800").status, 0);
    const QString drawing =
        saveImage(blackSquareOnWhite(QImage::Format_RGB32).scaled(2500, 2500), "drawing.bmp");
    EXPECT_EQ(runWithin(600, "'" + drawing + "' -o '" + path("b.svg") + "'").status, 0);
    expectError(runWithin(600, "'" + drawing + "' --scale 8 -o '" + path("b.png") + "'"), 1,
                "of memory, and there are 0.61");
}

TEST_F(Memory, DecodingIsRefusedToo) {
#ifdef OVTRACE_SANITIZED
    GTEST_SKIP() << "the sanitizers' own memory is beyond any limit";
#endif
    write("large.pgm", "P5 19000 19000 255\n" + QByteArray(19000 * 19000 / 16, 'x'));
    expectError(runWithin(500, "'" + path("large.pgm") + "'"), 1,
                "tracing 19000 x 19000 pixels would take about 0.72 GB");
}

TEST_F(Memory, WhatIsReportedIsTheProgramsOwn) {
#ifdef OVTRACE_SANITIZED
    GTEST_SKIP() << "the sanitizers' own memory comes on top";
#endif
    const std::vector<char> ours(300'000'000, 'x');
    const QString image = saveImage(blackSquareOnWhite(QImage::Format_RGB32), "square.png");
    const ProgramResult result = run({image, "-q", "--stats", "json", "-o", path("square.svg")});
    ASSERT_EQ(result.status, 0);
    const double peak = QJsonDocument::fromJson(result.output)["peakMemory"].toDouble();
    EXPECT_GT(peak, 1e6);
    EXPECT_LT(peak, static_cast<double>(ours.size()) / 2.0);
}
