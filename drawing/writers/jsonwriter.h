#pragma once

#include "writer.h"
#include "writeroptions.h"

/// One JSON object on one line: size, palette as channel values and the outlines piece by piece, or
/// the map of regions with each boundary once, or strokes and the areas beside them.
/// Numbers read back exactly; NaN and infinities are the strings "nan", "inf" and "-inf".
class JsonWriter final : public Writer {
public:
    explicit JsonWriter(const WriterOptions& options) : options(options) {
    }
    void write(const Drawing& whole, QIODevice& device) const override;

private:
    WriterOptions options;
};
