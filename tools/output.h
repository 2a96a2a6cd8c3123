#pragma once

#include "tracing.h"
#include "writer.h"

#include <memory>

class QSaveFile;

/// Where results go: the standard output, or files that appear whole or not at all.
class Output {
public:
    Output(const Arguments& arguments, const Writer& writer);
    ~Output();
    Output(const Output&) = delete;
    Output& operator=(const Output&) = delete;

    /// Writes the drawing of an image. Throws FileError when that cannot be done.
    void add(const QString& imageName, const Drawing& drawing);
    /// Completes a file that several drawings share.
    void finish();

private:
    const Arguments& arguments;
    const Writer& writer;
    std::unique_ptr<QSaveFile> shared; ///< the one output file, once there is something for it
};
