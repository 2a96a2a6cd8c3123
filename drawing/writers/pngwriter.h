#pragma once

#include "writer.h"
#include "writeroptions.h"

/// A picture of the result: its filled outlines, or the outlines over the faded image with their
/// nodes marked.
class PngWriter final : public Writer {
public:
    explicit PngWriter(const WriterOptions& options) : options(options) {
    }
    void write(const Drawing& drawing, QIODevice& device) const override;

private:
    WriterOptions options;
};
