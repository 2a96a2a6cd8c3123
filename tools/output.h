#pragma once

#include "plan.h"
#include <drawing/writers/writer.h>

#include <memory>

class ResultFile;

/// Where results go: a file each, or one that several drawings share.
class Output {
public:
    Output(const Arguments& arguments, const Writer& writer);
    ~Output();
    Output(const Output&) = delete;
    Output& operator=(const Output&) = delete;

    /// Writes the drawing of a job. Throws FileError when that cannot be done.
    void add(const Job& job, const Drawing& drawing);
    /// Completes a file that several drawings share.
    void finish();

private:
    const Arguments& arguments;
    const Writer& writer;
    std::unique_ptr<ResultFile> shared; ///< the one output file, once there is something for it
};
