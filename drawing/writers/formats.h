#pragma once

#include "writer.h"
#include "writeroptions.h"

#include <QStringList>

#include <memory>

/// A file format by its name, which is the ending of its files too.
struct FileFormat {
    const char* name = nullptr;
    const char* description = nullptr;
    std::unique_ptr<Writer> (*makeWriter)(const WriterOptions& options) = nullptr;
    bool takesSeveral = false; ///< whether drawings may follow one another in one file
};

/// All formats, the default one first.
const QList<FileFormat>& fileFormats();
QStringList formatNames();
/// The format of that name; null when there is none.
const FileFormat* findFormat(const QString& name);
