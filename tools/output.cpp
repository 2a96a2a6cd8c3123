#include "output.h"

#include <drawing/files/resultfile.h>

#include <QDir>
#include <QFileInfo>
#include <QHash>

#include <stdexcept>

namespace {

bool isSameFile(const QString& a, const QString& b) {
    const QString path = QFileInfo(a).canonicalFilePath();
    return !path.isEmpty() && path == QFileInfo(b).canonicalFilePath();
}

/// Errors of the device come before what a writer makes of them; each names the file.
void writeDrawing(const Writer& writer, const Drawing& drawing, ResultFile& file,
                  const QString& name) {
    try {
        writer.write(drawing, file);
    } catch (const FileError&) {
        throw;
    } catch (const std::runtime_error& error) {
        file.check();
        throw FileError(QString("%1: %2").arg(name, error.what()));
    }
    file.check();
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

Output::Output(const Arguments& arguments, const Writer& writer)
    : arguments(arguments), writer(writer) {
}

Output::~Output() = default;

void Output::add(const QString& imageName, const Drawing& drawing) {
    const QString fileName =
        arguments.output.isEmpty() ? outputName(imageName, arguments) : arguments.output;
    if (isSameFile(fileName, imageName))
        throw FileError(QString("%1: the result would replace the image").arg(imageName));
    if (arguments.output.isEmpty()) {
        ResultFile file(fileName);
        writeDrawing(writer, drawing, file, fileName);
        file.commit();
        return;
    }
    if (!shared)
        shared = std::make_unique<ResultFile>(fileName);
    writeDrawing(writer, drawing, *shared, fileName);
}

void Output::finish() {
    if (shared)
        shared->commit();
}
