#pragma once

#include <QPointF>

#include <cmath>

// Of points taken as vectors. Square roots and the four operations alone, which every platform
// rounds alike: so are the files that come of them.

inline double length(QPointF vector) {
    return std::sqrt(vector.x() * vector.x() + vector.y() * vector.y());
}

/// Twice the area of the triangle that a and b span; positive when b is to the left of a, y up.
inline double cross(QPointF a, QPointF b) {
    return a.x() * b.y() - a.y() * b.x();
}

inline double dot(QPointF a, QPointF b) {
    return a.x() * b.x() + a.y() * b.y();
}

/// Whether two points are the same to the last bit; Qt's operator finds those alike that are close.
inline bool isSame(QPointF a, QPointF b) {
    return a.x() == b.x() && a.y() == b.y();
}
