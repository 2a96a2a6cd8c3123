#pragma once

#include <optional>

enum class DxfVersion { R12, R2000, R2010 };

enum class DxfCurves {
    Arcs,     ///< closed polylines with bulges, within the deviation
    Lines,    ///< closed polylines of straight pieces, within the deviation
    Spline,   ///< one cubic spline an outline, exact
    Quadratic ///< a quadratic spline for each curve and a line for each line, exact
};

/// Whether outlines become polylines, which every version has, and not splines.
constexpr bool asPolylines(DxfCurves curves) {
    return curves == DxfCurves::Arcs || curves == DxfCurves::Lines;
}

/// What the user can choose about the files.
struct WriterOptions {
    bool outlinesOnly = false;    ///< SVG: strokes in place of fills
    bool closeSeams = false;      ///< SVG: fills stroked in their own colour
    std::optional<int> precision; ///< SVG, GeoJSON: digits after the decimal point; none: all
    DxfVersion dxfVersion = DxfVersion::R2010;
    DxfCurves dxfCurves = DxfCurves::Arcs;
    double deviation = 0.05; ///< pixels that arcs and straight pieces may be off the curves
    double scale = 1.0;      ///< PNG: its pixels a pixel of the image
    bool overlay = false;    ///< PNG: outlines over the faded image
};
