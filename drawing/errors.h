#pragma once

#include "files/filename.h"

#include <QString>

#include <stdexcept>

/// What is wrong with the command line, as a text for the user.
class UsageError : public std::runtime_error {
public:
    explicit UsageError(const QString& message)
        : std::runtime_error(presentable(message).toStdString()) {
    }
};

/// A file that cannot be read or written, as a text for the user.
class FileError : public std::runtime_error {
public:
    explicit FileError(const QString& message)
        : std::runtime_error(presentable(message).toStdString()) {
    }
};

/// Work that would take more memory than there is, as a text for the user.
class MemoryError : public FileError {
public:
    using FileError::FileError;
};
