#pragma once

#include <QColor>

/// The number of the colour nearest to `color` among the 255 that every DXF reader has.
int nearestDxfColor(const QColor& color);
