#pragma once

#include <QFile>
#include <QString>
#include <QStringList>

#include <memory>

// Files by name, whatever bytes the name has (see filename.h).

enum class FileKind { None, Regular, Folder, Other };

/// What the system says about a name, symbolic links followed.
struct FileFacts {
    FileKind kind = FileKind::None;
    qint64 size = 0;
    bool isReadable = false;
    /// The same for all names of one file; empty when there is no file.
    QString identity;
};

FileFacts factsOf(const QString& name);

/// What the standard input comes from; its kind is None when that is no file.
FileFacts factsOfStandardInput();

/// Opens for reading. Throws FileError.
std::unique_ptr<QFile> openForReading(const QString& name);

/// The names in a folder, in order, without "." and "..". Throws FileError.
QStringList namesIn(const QString& folder);

/// Makes a folder and those above it. Throws FileError.
void makeFolders(const QString& folder);

/// Removes a file, if it is there.
void removeFile(const QString& name);
