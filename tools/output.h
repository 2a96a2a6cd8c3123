#pragma once

#include "arguments.h"
#include <drawing/writers/writer.h>

#include <memory>

class ResultFile;

/// The file in which the result for an image goes when it gets one of its own.
QString outputName(const QString& imageName, const Arguments& arguments);

/// Throws FileError when two images would have the same result file.
void checkOutputNames(const QStringList& images, const Arguments& arguments);

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
    std::unique_ptr<ResultFile> shared; ///< the one output file, once there is something for it
};
