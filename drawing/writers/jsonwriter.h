#pragma once

#include "writer.h"
#include "writeroptions.h"

/// One JSON object on one line: size, palette as channel values and the outlines piece by piece.
/// Numbers read back exactly; NaN and infinities are the strings "nan", "inf" and "-inf".
class JsonWriter final : public Writer {
public:
    explicit JsonWriter(const WriterOptions&) {
    }
    void write(const Drawing& drawing, QIODevice& device) const override;
};
