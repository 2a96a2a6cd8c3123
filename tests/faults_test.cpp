// What the system refuses at any step of writing a result is an error in its words, and the older
// file stays.

#include "support/program.h"
#include "support/randominput.h"

#include <QDir>
#include <QFile>
#include <QProcess>

#include <cerrno>
#include <csignal>
#include <cstring>

namespace {

class Faults : public ProgramTest {
protected:
    void SetUp() override {
        RandomInput input(4711);
        image = saveImage(input.image(40), "image.png");
        ASSERT_TRUE(QFile::copy(image, path("other.png")));
    }
    /// A run in which calls of the system fail.
    static ProgramResult runWith(const QString& faults, const QStringList& words) {
        return runProgram("/usr/bin/env", environment(faults) + words);
    }
    /// The signal that a run ends with, 0 for none.
    static int signalOf(const QString& faults, const QStringList& words) {
        QProcess process;
        process.start("/usr/bin/env", environment(faults) + words);
        EXPECT_TRUE(process.waitForFinished());
        return process.exitStatus() == QProcess::CrashExit ? process.exitCode() : 0;
    }
    /// All names in a folder but the images', hidden ones included.
    QStringList results(const QString& folder) const {
        QStringList names =
            QDir(path(folder)).entryList(QDir::Files | QDir::Hidden | QDir::NoDotAndDotDot);
        names.removeAll("image.png");
        names.removeAll("other.png");
        return names;
    }
    QString image;

private:
    static QStringList environment(const QString& faults) {
        return {QString("LD_PRELOAD=") + OVTRACE_FAILING_CALLS, "OVTRACE_FAULTS=" + faults,
                OVTRACE_PROGRAM};
    }
};

QString fault(const char* call, int error) {
    return QString("%1=%2").arg(call).arg(error);
}

/// No file without a name: as on the file systems that do not know them.
QString hidden() {
    return ' ' + fault("open", EOPNOTSUPP);
}

const QStringList& formats() {
    static const QStringList names{"svg", "dxf", "pdf", "png", "json", "geojson"};
    return names;
}

} // namespace

TEST_F(Faults, AnyStepOfWritingCanFailAndTheOldFileStays) {
    struct Step {
        const char* call;
        int error;
        bool needsOldFile; ///< a new file needs no such call
        bool needsHiddenFile;
    };
    const Step steps[] = {
        {"write", ENOSPC, false, false}, {"write", EIO, false, false},
        {"fsync", ENOSPC, false, false}, {"fsync", EIO, false, false},
        {"fsync", EDQUOT, false, false}, {"close", EIO, false, false},
        {"rename", EACCES, true, false}, {"rename", ENOSPC, false, true},
    };
    for (const QString& format : formats()) {
        const QString name = path("result." + format);
        for (const Step& step : steps) {
            for (const bool isHidden : {false, true}) {
                if (step.needsHiddenFile && !isHidden)
                    continue;
                for (const bool hasOld : {true, false}) {
                    if (step.needsOldFile && !hasOld)
                        continue;
                    QFile::remove(name);
                    if (hasOld)
                        writeFile(name, "old");
                    const QString faults =
                        fault(step.call, step.error) + (isHidden ? hidden() : QString());
                    SCOPED_TRACE(
                        (format + ' ' + faults + (hasOld ? " old" : " new")).toStdString());
                    expectError(runWith(faults, {image, "--min-path", "0", "-o", name}), 1,
                                "result." + format.toUtf8() +
                                    ": cannot be written: " + std::strerror(step.error));
                    EXPECT_EQ(results("."),
                              hasOld ? QStringList("result." + format) : QStringList());
                    if (hasOld) {
                        EXPECT_EQ(contents(name), "old");
                    }
                }
            }
        }
        QFile::remove(name);
    }
}

TEST_F(Faults, SettingsAreAResultToo) {
    writeFile(path("s.json"), "{}");
    for (const char* call : {"write", "fsync", "close", "rename"}) {
        expectError(
            runWith(fault(call, EIO), {"--print-settings", "--save-settings", path("s.json")}), 1,
            "s.json: cannot be written: Input/output error");
        EXPECT_EQ(contents(path("s.json")), "{}") << call;
    }
}

TEST_F(Faults, WorkersTellThemToo) {
    for (const char* call : {"write", "fsync", "close"}) {
        const auto result =
            runWith(fault(call, EIO), {image, path("other.png"), "-j", "2", "-q", "--min-path", "0",
                                       "--continue-on-error", "--output-dir", path("out")});
        EXPECT_EQ(result.status, 1);
        EXPECT_EQ(result.errors.count("cannot be written: Input/output error"), 2)
            << result.errors.toStdString();
        EXPECT_EQ(results("out"), QStringList());
    }
}

TEST_F(Faults, AWorkerThatIsKilledCostsNoResult) {
    for (const QString folder : {"out", "once"}) {
        const bool isOnce = folder == "once";
        QStringList words{image, path("other.png"),     "-j",           "2",         "--min-path",
                          "0",   "--continue-on-error", "--output-dir", path(folder)};
        if (isOnce) {
            writeFile(path("once.lock"), "");
            qputenv("OVTRACE_FAULTS_ONCE", path("once.lock").toUtf8());
        }
        const auto result = runWith("write=k9", words);
        qunsetenv("OVTRACE_FAULTS_ONCE");
        EXPECT_EQ(result.status, isOnce ? 0 : 1) << result.errors.toStdString();
        EXPECT_EQ(result.errors.count(": its process has crashed"), isOnce ? 0 : 2)
            << result.errors.toStdString();
        EXPECT_EQ(results(folder),
                  isOnce ? QStringList({"image.svg", "other.svg"}) : QStringList());
    }
}

TEST_F(Faults, DisksThatCannotSyncAreNoError) {
    for (const int error : {EINVAL, ENOTSUP, EROFS})
        EXPECT_EQ(runWith(fault("fsync", error), {image, "-o", path("a.svg")}).status, 0);
}

TEST_F(Faults, AFileWithoutANameIsNotNeeded) {
    ASSERT_EQ(run({image, "--min-path", "0", "-o", path("a.dxf")}).status, 0);
    // Neither where it cannot be made nor where it cannot be named.
    const QStringList refusals{fault("open", EOPNOTSUPP), fault("open", EISDIR)};
    for (const QString& refusal : refusals) {
        for (int turn = 0; turn < 2; ++turn) { // anew, and in the place of an older one
            EXPECT_EQ(runWith(refusal, {image, "--min-path", "0", "-o", path("b.dxf")}).status, 0);
            EXPECT_EQ(contents(path("b.dxf")), contents(path("a.dxf")));
        }
    }
    EXPECT_EQ(results("."), QStringList({"a.dxf", "b.dxf"}));
}

TEST_F(Faults, AKilledRunLeavesAtMostAHiddenFileAndTheNextRemovesIt) {
    const QStringList words{image, "--min-path", "0", "-o", path("a.svg")};
    writeFile(path("a.svg"), "old");
    EXPECT_EQ(signalOf("write=k9" + hidden(), words), SIGKILL);
    QStringList left = results(".");
    ASSERT_EQ(left.size(), 2);
    EXPECT_TRUE(left[0].startsWith(".ovtrace-") && left[0].endsWith(".part"))
        << left[0].toStdString();
    EXPECT_EQ(contents(path("a.svg")), "old");
    EXPECT_EQ(run(words).status, 0);
    EXPECT_EQ(results("."), QStringList("a.svg"));
    // A request to end is answered by clearing up.
    for (const int number : {SIGTERM, SIGINT, SIGHUP}) {
        EXPECT_EQ(signalOf(QString("write=k%1").arg(number) + hidden(), words), number);
        EXPECT_EQ(results("."), QStringList("a.svg"));
    }
    // Where files need no name, nothing is ever left.
    EXPECT_EQ(signalOf("write=k9", words), SIGKILL);
    EXPECT_EQ(results("."), QStringList("a.svg"));
}

TEST_F(Faults, StandardOutputThatIsAFileHasTheLastWord) {
    for (const char* call : {"write", "fsync"}) {
        const auto result = runProgram(
            "/bin/sh", {"-c", QString("LD_PRELOAD='%1' OVTRACE_FAULTS='%2' '%3' '%4' -o - > '%5'")
                                  .arg(OVTRACE_FAILING_CALLS, fault(call, EIO), OVTRACE_PROGRAM,
                                       image, path("out.svg"))});
        expectError(result, 1, "standard output: cannot be written: Input/output error");
    }
}
