#include "files.h"

#include "../errors.h"

#include <QDir>
#include <QFileInfo>

FileFacts factsOf(const QString& name) {
    const QFileInfo info(name);
    FileFacts facts;
    if (!info.exists())
        return facts;
    facts.kind = info.isFile()  ? FileKind::Regular
                 : info.isDir() ? FileKind::Folder
                                : FileKind::Other;
    facts.size = info.size();
    facts.isReadable = info.isReadable();
    facts.identity = info.canonicalFilePath().toLower();
    return facts;
}

FileFacts factsOfStandardInput() {
    return {};
}

std::unique_ptr<QFile> openForReading(const QString& name) {
    auto file = std::make_unique<QFile>(name);
    if (!file->open(QIODevice::ReadOnly))
        throw FileError(QString("%1: cannot be read: %2").arg(name, file->errorString()));
    return file;
}

QStringList namesIn(const QString& folder) {
    QStringList names =
        QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    names.sort();
    return names;
}

void makeFolders(const QString& folder) {
    if (!QDir().mkpath(folder))
        throw FileError(QString("%1: the folder cannot be made").arg(folder));
}

void removeFile(const QString& name) {
    QFile::remove(name);
}
