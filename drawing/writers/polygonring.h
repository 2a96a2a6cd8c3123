#pragma once

#include <QPointF>
#include <QSize>

#include <vector>

/// A closed ring (its last point is its first) in drawing coordinates as a polygon may have it:
/// kept inside the image, without repeated points and without spikes that lead out and back. Empty
/// when nothing with an area is left.
std::vector<QPointF> polygonRing(const std::vector<QPointF>& ring, QSize image);
