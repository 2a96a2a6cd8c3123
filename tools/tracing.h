#pragma once

#include "arguments.h"
#include "writer.h"

#include <stdexcept>

/// A file that cannot be read or written, as a text for the user.
class FileError : public std::runtime_error {
public:
    explicit FileError(const QString& message) : std::runtime_error(message.toStdString()) {
    }
};

/// Reads and traces one image file. Throws FileError when it is no image that can be read.
///
/// Random draws start afresh, so that the result does not depend on what was traced before.
Drawing traceFile(const QString& fileName, const Arguments& arguments);
