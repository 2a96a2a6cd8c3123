#pragma once

#include "writer.h"

#include <QPainterPath>

class QPainter;

/// An outline as a path whose y axis points down, in pixels of the image.
QPainterPath toPath(const OvPolyline& polyline, int imageHeight);

/// Paints the outlines filled with their colours, in their order; one unit is a pixel.
void paintFilled(QPainter& painter, const Drawing& drawing);
