#include "output.h"

#include <QDir>
#include <QFileInfo>
#include <QHash>
#include <QSaveFile>

#include <cstdio>

namespace {

bool isSameFile(const QString& a, const QString& b) {
    const QString path = QFileInfo(a).canonicalFilePath();
    return !path.isEmpty() && path == QFileInfo(b).canonicalFilePath();
}

[[noreturn]] void failWriting(const QFileDevice& file) {
    throw FileError(QString("%1: cannot be written: %2").arg(file.fileName(), file.errorString()));
}

std::unique_ptr<QSaveFile> openFile(const QString& fileName) {
    auto file = std::make_unique<QSaveFile>(fileName);
    // A device or a pipe has no folder in which a new file could take its place.
    file->setDirectWriteFallback(QFileInfo(fileName).exists() && !QFileInfo(fileName).isFile());
    if (!file->open(QIODevice::WriteOnly))
        failWriting(*file);
    return file;
}

void commit(QSaveFile& file) {
    if (!file.commit())
        failWriting(file);
}

void writeStandardOutput(const Writer& writer, const Drawing& drawing) {
    QFile file;
    if (file.open(stdout, QIODevice::WriteOnly))
        writer.write(drawing, file);
    if (!file.flush() || file.error() != QFileDevice::NoError)
        throw FileError("the standard output cannot be written");
}

} // namespace

QString outputName(const QString& imageName, const Arguments& arguments) {
    const QFileInfo image(imageName);
    QString name = arguments.nameTemplate;
    name.replace("{name}", imageName == "-" ? QString("traced") : image.completeBaseName());
    name.replace("{format}", arguments.format);
    name.replace("{page}", QString::number(arguments.input.page));
    const QString folder = arguments.outputFolder.isEmpty() ? image.path() : arguments.outputFolder;
    return folder + '/' + name + '.' + arguments.format;
}

void checkOutputNames(const QStringList& images, const Arguments& arguments) {
    QHash<QString, QString> imageOf;
    for (const QString& image : images) {
        const QString name = QDir::cleanPath(outputName(image, arguments));
        if (imageOf.contains(name))
            throw FileError(QString("%1 and %2 would both be written to %3; choose another --name")
                                .arg(imageOf[name], image, name));
        imageOf[name] = image;
    }
}

void saveFile(const QString& fileName, const QByteArray& contents) {
    const auto file = openFile(fileName);
    file->write(contents);
    commit(*file);
}

void print(const QByteArray& text) {
    std::fwrite(text.constData(), 1, static_cast<std::size_t>(text.size()), stdout);
}

Output::Output(const Arguments& arguments, const Writer& writer)
    : arguments(arguments), writer(writer) {
}

Output::~Output() = default;

void Output::add(const QString& imageName, const Drawing& drawing) {
    if (arguments.output == "-") {
        writeStandardOutput(writer, drawing);
        return;
    }
    const QString fileName =
        arguments.output.isEmpty() ? outputName(imageName, arguments) : arguments.output;
    if (isSameFile(fileName, imageName))
        throw FileError(QString("%1: the result would replace the image").arg(imageName));
    if (arguments.output.isEmpty()) {
        const auto file = openFile(fileName);
        writer.write(drawing, *file);
        commit(*file);
        return;
    }
    if (!shared)
        shared = openFile(fileName);
    writer.write(drawing, *shared);
}

void Output::finish() {
    if (shared)
        commit(*shared);
}
