#pragma once

#include "../drawing.h"
#include "../raster/fill.h"

/// A drawing painted into a picture of its own: `scale` pixels of the picture for each of the
/// image, from the top down, in time that grows with the pixels and the lengths of the outlines.
class PicturePainter {
public:
    /// `picture` is blank, of the format ARGB32_Premultiplied; it and the drawing outlive the
    /// object.
    PicturePainter(QImage& picture, const Drawing& drawing, double scale);

    /// The strokes and below them the shapes, filled with their colours. Regions reach under one
    /// another so that no seams show, unless they are to be cut out.
    void paintFilled(bool cutOut = false);
    /// All paths as lines over the faded image, and marks where their pieces end and where they
    /// meet.
    void paintOverlay();

private:
    void paintStroke(const Stroke& stroke);
    void paintMarks(std::span<const QPointF> points, double side, const QColor& color);
    void paintLine(qsizetype path);
    void paintFadedImage();
    void toPicture(std::span<const PathPiece> pieces);

    QImage& picture;
    const Drawing& drawing;
    double scale;
    RasterFill raster;
    RasterPath contours;
    std::vector<QPointF> line; ///< what toPicture() has made
};
