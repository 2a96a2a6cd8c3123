#pragma once

#include "writer.h"
#include "writeroptions.h"

/// A DXF drawing: a layer for each colour, and the outlines as polylines or splines on them, in the
/// drawing's unit with the origin at the lower left.
class DxfWriter final : public Writer {
public:
    explicit DxfWriter(const WriterOptions& options) : options(options) {
    }
    void write(const Drawing& drawing, QIODevice& device) const override;

private:
    WriterOptions options;
};
