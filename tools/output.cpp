#include "output.h"

#include <QFileInfo>
#include <QSaveFile>

#include <cstdio>

namespace {

bool isSameFile(const QString& a, const QString& b) {
    const QString path = QFileInfo(a).canonicalFilePath();
    return !path.isEmpty() && path == QFileInfo(b).canonicalFilePath();
}

void writeFile(const QString& fileName, const QByteArray& contents) {
    QSaveFile file(fileName);
    // A device or a pipe has no folder in which a new file could take its place.
    file.setDirectWriteFallback(QFileInfo(fileName).exists() && !QFileInfo(fileName).isFile());
    if (!file.open(QIODevice::WriteOnly) || file.write(contents) != contents.size() ||
        !file.commit())
        throw FileError(QString("%1: cannot be written: %2").arg(fileName, file.errorString()));
}

void writeStandardOutput(const QByteArray& contents) {
    const auto size = static_cast<std::size_t>(contents.size());
    if (std::fwrite(contents.constData(), 1, size, stdout) != size || std::fflush(stdout) != 0)
        throw FileError("the standard output cannot be written");
}

QString nameBeside(const QString& imageName, Format format) {
    const QFileInfo image(imageName);
    const QString suffix = format == Format::Json ? ".json" : ".svg";
    return image.path() + '/' + image.completeBaseName() + suffix;
}

} // namespace

void Output::add(const QString& imageName, const QByteArray& result) {
    if (arguments.output == "-") {
        writeStandardOutput(result);
        return;
    }
    const QString fileName =
        arguments.output.isEmpty() ? nameBeside(imageName, arguments.format) : arguments.output;
    if (isSameFile(fileName, imageName))
        throw FileError(QString("%1: the result would replace the image").arg(imageName));
    if (arguments.output.isEmpty())
        writeFile(fileName, result);
    else
        pending += result;
}

void Output::finish() {
    if (!arguments.output.isEmpty() && arguments.output != "-")
        writeFile(arguments.output, pending);
}
