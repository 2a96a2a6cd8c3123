#pragma once

#include "writer.h"

/// An SVG picture of the image's size: one path an outline, with native lines and quadratic
/// curves, filled with its layer's colour and in the order of the drawing.
class SvgWriter final : public Writer {
public:
    void write(const Drawing& drawing, QIODevice& device) const override;
    bool takesSeveral() const override {
        return false;
    }
};
