#pragma once

#include <QColor>
#include <QList>
#include <QSizeF>

#include <optional>

enum class DxfVersion { R12, R2000, R2010 };

enum class DxfCurves {
    Arcs,     ///< closed polylines with bulges, within the deviation
    Lines,    ///< closed polylines of straight pieces, within the deviation
    Spline,   ///< one cubic spline an outline, exact
    Quadratic ///< a quadratic spline for each curve and a line for each line, exact
};

enum class DxfEdges {
    Rings, ///< every region's outer ring and holes
    Shared ///< every boundary once, so that nothing is cut twice
};

/// Whether outlines become polylines, which every version has, and not splines.
constexpr bool asPolylines(DxfCurves curves) {
    return curves == DxfCurves::Arcs || curves == DxfCurves::Lines;
}

/// Paper to put a drawing on.
struct PaperChoice {
    QSizeF millimetres;
    bool isTurned = false; ///< as it is given; otherwise the drawing decides which way it lies
};

/// What the user can choose about the files.
struct WriterOptions {
    bool outlinesOnly = false; ///< SVG: strokes in place of fills
    bool closeSeams = false;   ///< SVG: fills stroked in their own colour
    /// SVG, GeoJSON: digits after the decimal point. None: all for outlines, in SVG three for the
    /// other methods.
    std::optional<int> precision;
    bool cutOut = false;         ///< SVG, PDF, PNG: regions that only touch, with all their holes
    bool dropBackground = false; ///< leaves out the colour of most of the image's rim
    QList<QColor> hiddenColors;  ///< leaves out these colours
    DxfEdges dxfEdges = DxfEdges::Rings;
    bool dxfHatch = false; ///< DXF: areas filled by hatches, in R2000 and R2010
    DxfVersion dxfVersion = DxfVersion::R2010;
    DxfCurves dxfCurves = DxfCurves::Arcs;
    double deviation = 0.05; ///< pixels that arcs and straight pieces may be off the curves
    double scale = 1.0;      ///< PNG: its pixels a pixel of the image
    bool overlay = false;    ///< PNG: outlines over the faded image
    std::optional<PaperChoice> paper; ///< PDF; none: a page of the drawing's size
    double marginMillimetres = 10.0;  ///< PDF: of the paper
};
