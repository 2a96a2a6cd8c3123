#pragma once

#include "writer.h"

#include <QPainterPath>

class QPainter;

/// A shape as a path whose y axis points down, in pixels of the image.
QPainterPath toPainterPath(const Drawing& drawing, const Shape& shape);

/// Appends pieces, whose y axis points up, to such a path.
void appendTo(QPainterPath& path, std::span<const PathPiece> pieces, int imageHeight);

/// Paints the shapes filled with their colours, then the strokes; one unit is a pixel. Regions
/// reach under one another so that no seams show, unless they are to be cut out. For pages, whose
/// painter keeps paths; PicturePainter paints pixels.
void paintFilled(QPainter& painter, const Drawing& drawing, bool cutOut);
