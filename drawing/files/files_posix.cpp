#include "files.h"

#include "../errors.h"
#include "filename.h"

#include <QFileInfo>

#include <cerrno>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

FileKind kindOf(mode_t mode) {
    if (S_ISREG(mode))
        return FileKind::Regular;
    return S_ISDIR(mode) ? FileKind::Folder : FileKind::Other;
}

FileFacts factsOf(const struct stat& status) {
    FileFacts facts;
    facts.kind = kindOf(status.st_mode);
    facts.size = status.st_size;
    facts.isReadable = true;
    facts.identity = QString("%1:%2").arg(status.st_dev).arg(status.st_ino);
    return facts;
}

[[noreturn]] void failReading(const QString& name, int error) {
    throw FileError(QString("%1: cannot be read: %2").arg(name, std::strerror(error)));
}

} // namespace

FileFacts factsOf(const QString& name) {
    const QByteArray path = fileNameToBytes(name);
    struct stat status {};
    if (stat(path.constData(), &status) != 0)
        return {};
    FileFacts facts = factsOf(status);
    facts.isReadable = access(path.constData(), R_OK) == 0;
    return facts;
}

FileFacts factsOfStandardInput() {
    struct stat status {};
    return fstat(STDIN_FILENO, &status) == 0 ? factsOf(status) : FileFacts();
}

std::unique_ptr<QFile> openForReading(const QString& name) {
    const int descriptor = open(fileNameToBytes(name).constData(), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0)
        failReading(name, errno);
    auto file = std::make_unique<QFile>();
    if (!file->open(descriptor, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle)) {
        close(descriptor);
        throw FileError(QString("%1: cannot be read: %2").arg(name, file->errorString()));
    }
    return file;
}

QStringList namesIn(const QString& folder) {
    DIR* const entries = opendir(fileNameToBytes(folder).constData());
    if (entries == nullptr)
        failReading(folder, errno);
    QStringList names;
    while (const dirent* entry = readdir(entries)) {
        const QByteArray name(static_cast<const char*>(entry->d_name));
        if (name != "." && name != "..")
            names.append(fileNameFromBytes(name));
    }
    closedir(entries);
    names.sort();
    return names;
}

void makeFolders(const QString& folder) {
    if (factsOf(folder).kind == FileKind::Folder)
        return;
    const QString above = QFileInfo(folder).path();
    if (above != folder && above != ".")
        makeFolders(above);
    if (mkdir(fileNameToBytes(folder).constData(), 0777) != 0 && errno != EEXIST)
        throw FileError(
            QString("%1: the folder cannot be made: %2").arg(folder, std::strerror(errno)));
    if (factsOf(folder).kind != FileKind::Folder)
        throw FileError(QString("%1: is a file and not a folder").arg(folder));
}

void removeFile(const QString& name) {
    unlink(fileNameToBytes(name).constData());
}
