#pragma once

#include "writer.h"
#include "writeroptions.h"

/// An SVG picture: one path an outline, with native lines and quadratic curves, filled with its
/// layer's colour or stroked.
///
/// The paths come in the order of the drawing. They are put into one group a layer where that
/// changes nothing in what is painted over what.
class SvgWriter final : public Writer {
public:
    explicit SvgWriter(const WriterOptions& options) : options(options) {
    }
    void write(const Drawing& drawing, QIODevice& device) const override;

private:
    WriterOptions options;
};
