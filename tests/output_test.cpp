// Results are never lost or damaged: full disks, devices, closed streams, kills.

#include "support/program.h"
#include "support/randominput.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>

#include <csignal>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

namespace {

/// Runs a line of the shell in which $ovtrace is the program and $1 the folder of the test.
ProgramResult shell(const QString& line, const QString& folder, const QString& name = "sh") {
    return runProgram("/bin/" + name,
                      {"-c", QString("ovtrace='%1'; %2").arg(OVTRACE_PROGRAM, line), name, folder});
}

mode_t typeOf(const QString& name) {
    struct stat status {};
    return lstat(qPrintable(name), &status) == 0 ? status.st_mode & S_IFMT : 0;
}

class OutputTest : public ProgramTest {
protected:
    void SetUp() override {
        RandomInput input(4711);
        image = saveImage(input.image(40), "image.png");
    }
    QStringList results() const {
        QStringList names =
            QDir(folderPath()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
        names.removeAll("image.png");
        return names;
    }
    QString image;
};

const QStringList& formats() {
    static const QStringList names{"svg", "dxf", "pdf", "png", "json", "geojson"};
    return names;
}

} // namespace

TEST_F(OutputTest, AFullDeviceIsAnErrorInTheSystemsWords) {
    for (const QString& format : formats()) {
        const auto result = run({image, "--min-path", "0", "-f", format, "-o", "/dev/full"});
        expectError(result, 1, "/dev/full: cannot be written: No space left on device");
    }
    expectError(run({image, "--save-settings", "/dev/full", "-o", path("a.svg")}), 1,
                "/dev/full: cannot be written: No space left on device");
    EXPECT_EQ(typeOf("/dev/full"), static_cast<mode_t>(S_IFCHR));
}

TEST_F(OutputTest, ALostStandardOutputIsAnError) {
    for (const QString words :
         {"--print-settings", "--help", "--version", "--list-options", "--list-formats",
          "--generate man", "--plugin-info", "$1/image.png -o -", "$1/image.png --stats json",
          "$1/image.png --stats table", "$1/image.png -f pdf -o -", "$1/image.png -f png -o -"}) {
        for (const QString target : {">/dev/full", ">&-"}) {
            const auto result = shell("$ovtrace " + words + ' ' + target, folderPath());
            expectError(result, 1, "standard output: cannot be written: ");
            EXPECT_TRUE(result.errors.contains("No space left") ||
                        result.errors.contains("Bad file descriptor"))
                << words.toStdString() << ": " << result.errors.toStdString();
        }
    }
}

TEST_F(OutputTest, NoRoomLeavesTheOldFileAtAnySize) {
    for (const QString& format : formats()) {
        const QString name = path("result." + format);
        const QStringList words{image, "--min-path", "0", "-o", name};
        ASSERT_EQ(run(words).status, 0);
        const QByteArray whole = contents(name);
        writeFile(name, "old");
        int refused = 0;
        // Sizes of files in steps of half a kilobyte, as far as the result goes.
        for (qsizetype blocks = 0; blocks * 512 < whole.size(); blocks += 1 + whole.size() / 5120) {
            const auto result = shell(QString("ulimit -f %1; $ovtrace $1/image.png --min-path 0 "
                                              "-o $1/result.%2")
                                          .arg(blocks)
                                          .arg(format),
                                      folderPath());
            expectError(result, 1, "cannot be written: File too large");
            EXPECT_EQ(contents(name), "old") << format.toStdString() << ' ' << blocks;
            ++refused;
        }
        EXPECT_GT(refused, 0);
        EXPECT_EQ(results(), QStringList("result." + format));
        QFile::remove(name);
    }
}

TEST_F(OutputTest, NoRoomForOneOfSeveralWorkers) {
    ASSERT_TRUE(QFile::copy(image, path("other.png")));
    const auto result = shell("ulimit -f 0; $ovtrace $1/image.png $1/other.png -q -j 2 "
                              "--min-path 0 --output-dir $1/out",
                              folderPath());
    expectError(result, 1, "cannot be written: File too large");
    EXPECT_TRUE(QDir(path("out")).isEmpty());
    expectError(
        shell("ulimit -f 0; $ovtrace --print-settings --save-settings $1/s.json", folderPath()), 1,
        "s.json: cannot be written: File too large");
    EXPECT_FALSE(QFile::exists(path("s.json")));
}

TEST_F(OutputTest, AFullDiskLosesNothing) {
    const QString disk = path("disk");
    ASSERT_TRUE(QDir().mkpath(disk));
    if (runProgram("/bin/sh", {"-c", "mount -t tmpfs -o size=64k tmpfs '" + disk + "' 2>/dev/null"})
            .status != 0)
        GTEST_SKIP() << "only the administrator can make a small disk";
    for (const QString& format : formats()) {
        const QString name = disk + "/result." + format;
        writeFile(name, "old");
        for (int free = 0; free <= 60000; free += 4096) {
            // What is free after the old file and so much else.
            shell(QString("head -c %1 /dev/zero > '%2/rest'").arg(65536 - 4096 - free).arg(disk),
                  folderPath());
            const auto result = run({image, "--min-path", "0", "-o", name});
            if (result.status == 0) {
                EXPECT_GT(contents(name).size(), 100);
                EXPECT_TRUE(result.errors.isEmpty());
                break;
            }
            expectError(result, 1, "cannot be written: No space left on device");
            EXPECT_EQ(contents(name), "old");
        }
        for (const QString& left : QDir(disk).entryList(QDir::Files | QDir::Hidden)) {
            EXPECT_TRUE(left == "rest" || left == "result." + format) << left.toStdString();
            QFile::remove(disk + '/' + left);
        }
    }
    EXPECT_EQ(runProgram("/bin/umount", {disk}).status, 0);
}

TEST_F(OutputTest, WhatIsNoFileIsWrittenThroughAndStays) {
    const QByteArray svg = run({image, "-o", "-"}).output;
    ASSERT_GT(svg.size(), 100);
    ASSERT_EQ(mkfifo(qPrintable(path("pipe")), 0600), 0);
    EXPECT_EQ(
        shell("cat $1/pipe & $ovtrace $1/image.png -f svg -o $1/pipe && wait", folderPath()).output,
        svg);
    EXPECT_EQ(typeOf(path("pipe")), static_cast<mode_t>(S_IFIFO));
    ASSERT_TRUE(QFile::link("/dev/null", path("nothing")));
    EXPECT_EQ(run({image, "-f", "svg", "-o", path("nothing")}).status, 0);
    EXPECT_EQ(typeOf(path("nothing")), static_cast<mode_t>(S_IFLNK));
    EXPECT_EQ(typeOf("/dev/null"), static_cast<mode_t>(S_IFCHR));
    if (mknod(qPrintable(path("device")), S_IFCHR | 0666, 0x103) == 0) {
        EXPECT_EQ(run({image, "-f", "svg", "-o", path("device")}).status, 0);
        EXPECT_EQ(typeOf(path("device")), static_cast<mode_t>(S_IFCHR));
    }
    for (const QString name : {"/dev/stdout", "/dev/fd/1", "/proc/self/fd/1"}) {
        const auto result = shell("{ echo before; $ovtrace $1/image.png -f svg -o " + name +
                                      "; echo after; } > $1/log; ls $1; cat $1/log",
                                  folderPath());
        EXPECT_EQ(result.output,
                  "device\nimage.png\nlog\nnothing\npipe\nbefore\n" + svg + "after\n");
        EXPECT_EQ(result.errors, "");
    }
    EXPECT_EQ(shell("exec 3>&1; $ovtrace $1/image.png -f svg -o >(cat >&3); sleep 0.3",
                    folderPath(), "bash")
                  .output,
              svg);
}

TEST_F(OutputTest, ASocketIsWrittenThrough) {
    const QByteArray name = path("socket").toUtf8();
    const int server = socket(AF_UNIX, SOCK_STREAM, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    ASSERT_LT(name.size(), static_cast<qsizetype>(sizeof address.sun_path));
    std::copy_n(name.constData(), name.size(), static_cast<char*>(address.sun_path));
    ASSERT_EQ(bind(server, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    ASSERT_EQ(listen(server, 1), 0);
    QProcess process;
    process.start(OVTRACE_PROGRAM, {image, "-f", "svg", "-o", name});
    QFile connection;
    ASSERT_TRUE(connection.open(accept(server, nullptr, nullptr), QIODevice::ReadOnly,
                                QFileDevice::AutoCloseHandle));
    EXPECT_EQ(connection.readAll(), run({image, "-o", "-"}).output);
    ASSERT_TRUE(process.waitForFinished());
    EXPECT_EQ(process.exitCode(), 0);
    EXPECT_EQ(typeOf(path("socket")), static_cast<mode_t>(S_IFSOCK));
    close(server);
}

TEST_F(OutputTest, LinksAndPermissionsStay) {
    writeFile(path("old.svg"), "old");
    ASSERT_EQ(chmod(qPrintable(path("old.svg")), 0640), 0);
    ASSERT_TRUE(QFile::link("old.svg", path("link.svg")));
    ASSERT_TRUE(QFile::link("new.svg", path("dangling.svg")));
    EXPECT_EQ(run({image, "-o", path("link.svg")}).status, 0);
    EXPECT_EQ(typeOf(path("link.svg")), static_cast<mode_t>(S_IFLNK));
    EXPECT_GT(contents(path("old.svg")).size(), 100);
    struct stat status {};
    ASSERT_EQ(stat(qPrintable(path("old.svg")), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0640U);
    EXPECT_EQ(run({image, "-o", path("dangling.svg")}).status, 0);
    EXPECT_EQ(contents(path("new.svg")), contents(path("old.svg")));
    ASSERT_TRUE(QDir().mkpath(path("folder.svg")));
    expectError(run({image, "-o", path("folder.svg")}), 1, "cannot be written: Is a directory");
    expectError(run({image, "-o", path("none/a.svg")}), 1, "No such file or directory");
}

TEST_F(OutputTest, FiguresNeverLandInAResult) {
    for (const QString closed : {">&-", "2>&-", "<&-", "<&- >&- 2>&-"}) {
        shell("$ovtrace $1/image.png $1/image.png -f json -o $1/all.json --stats json " + closed,
              folderPath());
        shell("$ovtrace $1/image.png -f json -o $1/one.json", folderPath());
        const QByteArray one = contents(path("one.json"));
        if (QFile::exists(path("all.json"))) {
            EXPECT_EQ(contents(path("all.json")), one + one) << closed.toStdString();
        }
        QFile::remove(path("all.json"));
    }
    EXPECT_EQ(shell("$ovtrace $1/image.png -o $1/a.svg 2>&-", folderPath()).status, 0);
    expectError(shell("$ovtrace - -o $1/b.svg <&-", folderPath()), 1, "standard input");
}
