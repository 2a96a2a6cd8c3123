#pragma once

#include "../geometry/biarcs.h"
#include "dxfdocument.h"

#include <memory>

/// What an entity looks like beside its form.
struct DxfStyle {
    QByteArray layer;
    QByteArray lineType; ///< empty for that of the layer
    int lineWeight = -1; ///< hundredths of a millimetre on paper; negative for the layer's
    double width = 0.0;  ///< of polylines, in units
    bool isHole = false; ///< marked as a hole of the ring around it
};

/// A line in the form in which it is written.
struct DxfCurve {
    enum class Form { Polyline, Spline, Pieces, Line, Arc, Circle, Ellipse };

    DxfStyle style;
    Form form = Form::Polyline;
    bool isClosed = true;
    std::vector<BulgeVertex> vertices; ///< of a polyline
    std::vector<PathPiece> pieces;     ///< of all other forms

    /// The box around what is written.
    QRectF box() const;
    int entities() const;
};

/// Writes entities into the section that a DxfDocument has begun.
class DxfEntities {
public:
    DxfEntities(DxfText& text, DxfDocument& document, DxfVersion version)
        : text(text), document(document), version(version) {
    }

    void write(const DxfCurve& curve);
    /// A solid fill inside the first ring and outside the others; not in R12.
    void hatch(const QByteArray& layer, const std::vector<std::vector<BulgeVertex>>& rings);

private:
    bool isOld() const {
        return version == DxfVersion::R12;
    }
    void begin(const char* type, const DxfStyle& style);
    void subclass(const char* name);
    void markHole(const DxfStyle& style);
    void oldPolyline(const DxfCurve& curve);
    void polyline(const DxfCurve& curve);
    void line(const PathPiece& piece, const DxfStyle& style);
    void arc(const PathPiece& piece, const DxfStyle& style);
    void circle(const PathPiece& piece, const DxfStyle& style);
    void ellipse(const PathPiece& piece, const DxfStyle& style);
    void beginSpline(const DxfStyle& style, int degree, int knots, int points);
    void cubicSpline(const DxfCurve& curve);
    void singlePieces(const DxfCurve& curve);

    DxfText& text;
    DxfDocument& document;
    DxfVersion version;
};
