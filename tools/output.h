#pragma once

#include "tracing.h"

/// Where results go: the standard output, or files that appear whole or not at all.
class Output {
public:
    explicit Output(const Arguments& arguments) : arguments(arguments) {
    }

    /// Takes the result for an image. Throws FileError when it cannot be written.
    void add(const QString& imageName, const QByteArray& result);
    /// Writes what belongs into one file, once all of it is there.
    void finish();

private:
    const Arguments& arguments;
    QByteArray pending; ///< for the one output file
};
