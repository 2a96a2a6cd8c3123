#pragma once

#include "writer.h"
#include "writeroptions.h"

/// An SVG picture.
///
/// Outlines: one path each, with native lines and quadratic curves, filled with its layer's colour
/// or stroked. The paths come in the order of the drawing. They are put into one group a layer
/// where that changes nothing in what is painted over what.
///
/// Regions: one path or circle each, arcs as such, lower ones reaching under upper ones (Underlay)
/// unless they are to be cut out. Strokes: one path, circle or ellipse each, in groups by kind,
/// colour and width; solid areas and text in groups of their own.
class SvgWriter final : public Writer {
public:
    explicit SvgWriter(const WriterOptions& options) : options(options) {
    }
    void write(const Drawing& drawing, QIODevice& device) const override;

private:
    WriterOptions options;
};
