#pragma once

#include "writer.h"
#include "writeroptions.h"

/// One page of the drawing's size without margins, true to size when one was asked for, otherwise
/// 96 pixels an inch; or the paper that was asked for, see layOutPage().
class PdfWriter final : public Writer {
public:
    explicit PdfWriter(const WriterOptions& options) : options(options) {
    }
    void write(const Drawing& drawing, QIODevice& device) const override;

private:
    WriterOptions options;
};
