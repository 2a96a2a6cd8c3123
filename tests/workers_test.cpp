// Batches under hard conditions: few descriptors, signals, names of any bytes, broken images.

#include "support/program.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QThread>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <limits>
#include <sys/stat.h>
#include <unistd.h>

namespace {

class Workers : public ProgramTest {
protected:
    QString makeImages(int count) const {
        EXPECT_TRUE(QDir().mkpath(path("in")));
        const QString first = saveImage(blackSquareOnWhite(QImage::Format_RGB32), "in/000.png");
        for (int i = 1; i < count; ++i)
            EXPECT_TRUE(QFile::copy(first, path(QString("in/%1.png").arg(i, 3, 10, QChar('0')))));
        return path("in");
    }
    ProgramResult shell(const QString& line) const {
        return runProgram("/bin/sh",
                          {"-c", "ovtrace='" OVTRACE_PROGRAM "'; " + line, "sh", folderPath()});
    }
    qsizetype countIn(const QString& folder) const {
        return QDir(path(folder)).entryList(QDir::Files | QDir::Hidden).size();
    }
    /// An image whose trace takes long.
    QString noise(int side) const {
        QImage image(side, side, QImage::Format_RGB32);
        quint32 state = 1;
        for (int y = 0; y < side; ++y) {
            for (int x = 0; x < side; ++x) {
                state = state * 1664525U + 1013904223U;
                image.setPixel(x, y, state >> 8);
            }
        }
        return saveImage(image, "noise.bmp");
    }
};

} // namespace

TEST_F(Workers, FewDescriptorsLoseNothing) {
    makeImages(30);
    const auto result =
        shell("ulimit -n 64; $ovtrace $1/in --output-dir $1/out -j 128 --stats json");
    EXPECT_EQ(result.status, 0) << result.errors.toStdString();
    EXPECT_EQ(result.output.count('\n'), 30);
    EXPECT_EQ(countIn("out"), 30);
    EXPECT_TRUE(result.errors.endsWith("30 results\n"));
    // Even where there is room for one worker hardly.
    const auto scarce = shell("ulimit -n 24; $ovtrace $1/in --output-dir $1/scarce -j 8 -q");
    EXPECT_EQ(scarce.status, 0) << scarce.errors.toStdString();
    EXPECT_EQ(countIn("scarce"), 30);
}

TEST_F(Workers, EveryKindOfErrorIsGoneBeyond) {
    makeImages(2);
    QImage wide(20000, 2, QImage::Format_RGB32);
    wide.fill(Qt::white);
    saveImage(wide, "in/wide.png"); // longer than a PDF page can be
    saveImage(blackSquareOnWhite(QImage::Format_RGB32).scaled(3000, 3000), "in/large.png");
    writeFile(path("in/torn.png"), contents(path("in/000.png")).left(60));
    for (const QString jobs : {"1", "2"}) {
        const auto result =
            shell("$ovtrace $1/in $1/none.png --continue-on-error --max-pixels 1000000 -f pdf "
                  "--output-dir $1/out" +
                  jobs + " -j " + jobs);
        EXPECT_EQ(result.status, 1);
        EXPECT_EQ(countIn("out" + jobs), 2) << result.errors.toStdString();
        EXPECT_EQ(result.errors.count("ovtrace: "), 4) << result.errors.toStdString();
        for (const char* name : {"wide", "large.png: ", "torn.png: ", "none.png: no such file"})
            EXPECT_TRUE(result.errors.contains(name)) << name;
        EXPECT_TRUE(result.errors.endsWith("2 results, 4 failed\n")) << result.errors.toStdString();
    }
    const auto stopped = shell("$ovtrace $1/in/torn.png $1/in/000.png --output-dir $1/out3");
    EXPECT_TRUE(stopped.errors.contains("0 results, 1 failed, 1 not traced"))
        << stopped.errors.toStdString();
}

TEST_F(Workers, SignalsToTheParentEndThem) {
    const QString image = noise(1500);
    ASSERT_TRUE(QFile::copy(image, path("other.bmp")));
    for (const int number : {SIGTERM, SIGINT, SIGKILL}) {
        QProcess process;
        process.start(OVTRACE_PROGRAM, {image, path("other.bmp"), "-j", "2", "--min-path", "0",
                                        "--colors", "256", "--output-dir", path("out")});
        ASSERT_TRUE(process.waitForStarted());
        const QString children = QString("/proc/%1/task/%1/children").arg(process.processId());
        QByteArrayList workers;
        for (int i = 0; i < 200 && workers.size() < 2; ++i) {
            QThread::msleep(5);
            QFile file(children);
            if (file.open(QIODevice::ReadOnly))
                workers = file.readAll().simplified().split(' ');
        }
        ASSERT_EQ(workers.size(), 2) << "the kernel lists children";
        ASSERT_EQ(::kill(static_cast<pid_t>(process.processId()), number), 0);
        ASSERT_TRUE(process.waitForFinished());
        EXPECT_EQ(process.exitStatus(), QProcess::CrashExit);
        for (const QByteArray& worker : workers) {
            // Orphans are waited for by another process, which may take a moment.
            bool isGone = false;
            for (int i = 0; i < 100 && !isGone; ++i) {
                QFile status("/proc/" + worker + "/stat");
                isGone = !status.open(QIODevice::ReadOnly) || status.readAll().contains(") Z ");
                QThread::msleep(isGone ? 0 : 20);
            }
            EXPECT_TRUE(isGone) << "worker " << worker.toStdString() << " after " << number;
        }
        EXPECT_EQ(countIn("out"), 0);
    }
}

TEST_F(Workers, AnInterruptEndsATraceWithin50Milliseconds) {
    const QString image = noise(2000);
    qint64 fastest = std::numeric_limits<qint64>::max(); // the machine may have other work, too
    for (const int wait : {150, 200, 300, 400, 500, 700, 800, 1000}) {
        QProcess process;
        process.start(OVTRACE_PROGRAM, {image, "--min-path", "0", "-o", path("noise.json")});
        ASSERT_TRUE(process.waitForStarted());
        if (process.waitForFinished(wait))
            break;
        QElapsedTimer timer;
        timer.start();
        ::kill(static_cast<pid_t>(process.processId()), SIGINT);
        ASSERT_TRUE(process.waitForFinished());
        fastest = std::min(fastest, timer.elapsed());
        EXPECT_EQ(files(), QStringList("noise.bmp"));
    }
    EXPECT_LT(fastest, 50);
}

TEST_F(Workers, ALargeImageAloneHasABarOnATerminal) {
    const QString image = noise(2400); // long enough for several states of the bar
    const int terminal = posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK);
    ASSERT_GE(terminal, 0);
    ASSERT_EQ(grantpt(terminal), 0);
    ASSERT_EQ(unlockpt(terminal), 0);
    const QByteArray other = ptsname(terminal);
    const int screen = open(other.constData(), O_RDWR | O_NOCTTY);
    ASSERT_GE(screen, 0);
    QProcess process;
    process.setChildProcessModifier([screen] { dup2(screen, STDERR_FILENO); });
    process.start(OVTRACE_PROGRAM,
                  {image, "--min-path", "0", "--colors", "64", "-o", path("a.json")});
    QByteArray shown;
    while (!process.waitForFinished(20) && process.error() == QProcess::Timedout) {
        QByteArray part(4096, ' ');
        const ssize_t size = read(terminal, part.data(), static_cast<std::size_t>(part.size()));
        shown += part.left(std::max<ssize_t>(size, 0));
    }
    EXPECT_EQ(process.exitCode(), 0);
    QList<int> shares;
    static const QRegularExpression state("\\] ([0-9]+) %");
    for (auto match = state.globalMatch(QString::fromUtf8(shown)); match.hasNext();)
        shares.append(match.next().captured(1).toInt());
    EXPECT_GE(shares.size(), 2) << shown.toStdString();
    EXPECT_TRUE(std::is_sorted(shares.begin(), shares.end())) << shown.toStdString();
    close(screen);
    close(terminal);
    EXPECT_EQ(run({image, "--crop", "0,0,50,50", "-o", path("a.json")}).errors, "")
        << "nothing where there is no terminal";
}

TEST_F(Workers, PipesInAFolderDoNotHang) {
    makeImages(1);
    ASSERT_EQ(mkfifo(qPrintable(path("in/pipe.png")), 0600), 0);
    const auto result = shell("timeout 20 $ovtrace $1/in --output-dir $1/out");
    EXPECT_EQ(result.status, 0);
    EXPECT_TRUE(result.errors.contains("pipe.png: no file, but a device or a pipe"))
        << result.errors.toStdString();
    EXPECT_EQ(
        shell("cat $1/in/000.png > $1/in/pipe.png & $ovtrace $1/in/pipe.png -f json -o -").output,
        shell("$ovtrace $1/in/000.png -f json -o -").output)
        << "a pipe that is named is read";
}

TEST_F(Workers, NamesThatAreNoUtf8Work) {
    makeImages(1);
    // A Latin-1 name, one that is cut within a character, and an encoded surrogate.
    const auto result = shell(
        "cd $1/in; n1=$(printf 'caf\\351'); n2=$(printf 'z\\303'); n3=$(printf '\\355\\262\\200'); "
        "for n in \"$n1\" \"$n2\" \"$n3\"; do cp 000.png \"$n.png\"; done; "
        "$ovtrace \"$n1.png\" -o \"$n1.dxf\" -q && test -s \"$n1.dxf\" && rm \"$n1.dxf\" && "
        "mkdir \"$1/$n2\" && $ovtrace $1/in -j 2 -q --output-dir \"$1/$n2\" && "
        "for n in 000 \"$n1\" \"$n2\" \"$n3\"; do test -s \"$1/$n2/$n.svg\" || exit 9; done; "
        "$ovtrace \"$n1-none\"; test $? = 1 && rm -r \"$1/$n2\" *");
    EXPECT_EQ(result.status, 0) << result.errors.toStdString();
    EXPECT_EQ(result.errors.count('\n'), 1) << result.errors.toStdString();
}
