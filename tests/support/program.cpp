#include "program.h"

#include <QDir>
#include <QFile>
#include <QProcess>

ProgramResult runProgram(const QString& program, const QStringList& arguments,
                         const QByteArray& input, const QString& folder) {
    QProcess process;
    process.setWorkingDirectory(folder);
    process.start(program, arguments);
    process.write(input);
    process.closeWriteChannel();
    EXPECT_TRUE(process.waitForFinished(300000));
    EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
    // What is said to people has the line ends of the system.
    return {process.exitCode(), process.readAllStandardOutput(),
            process.readAllStandardError().replace("\r\n", "\n")};
}

ProgramResult run(const QStringList& arguments, const QByteArray& input, const QString& folder) {
    return runProgram(OVTRACE_PROGRAM, arguments, input, folder);
}

QString sample(const QString& name) {
    return QString(OVTRACE_SAMPLES) + '/' + name;
}

QByteArray contents(const QString& fileName) {
    QFile file(fileName);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << fileName.toStdString();
    return file.readAll();
}

void writeFile(const QString& fileName, const QByteArray& bytes) {
    QFile file(fileName);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    ASSERT_EQ(file.write(bytes), bytes.size());
}

/// One clear line on stderr that mentions `mention`, and nothing on stdout.
void expectError(const ProgramResult& result, int status, const QByteArray& mention) {
    EXPECT_EQ(result.status, status);
    EXPECT_TRUE(result.output.isEmpty()) << result.output.left(200).toStdString();
    EXPECT_TRUE(result.errors.startsWith("ovtrace: ")) << result.errors.toStdString();
    EXPECT_EQ(result.errors.count('\n'), 1) << result.errors.toStdString();
    EXPECT_TRUE(result.errors.contains(mention)) << result.errors.toStdString();
}

QImage blackSquareOnWhite(QImage::Format format) {
    QImage image(20, 16, QImage::Format_RGB32);
    image.fill(Qt::white);
    for (int y = 4; y < 12; ++y) {
        for (int x = 5; x < 15; ++x)
            image.setPixel(x, y, qRgb(0, 0, 0));
    }
    return image.convertToFormat(format);
}

QStringList ProgramTest::files() const {
    return QDir(folder.path()).entryList(QDir::Files, QDir::Name);
}
