#pragma once

#include "vectors.h"

#include <utility>

/// An order of points, for sets of them.
struct ByPlace {
    bool operator()(QPointF a, QPointF b) const {
        return a.x() != b.x() ? a.x() < b.x() : a.y() < b.y();
    }
};

/// A straight edge in one of its directions.
using Step = std::pair<QPointF, QPointF>;

/// By their starts.
struct ByStart {
    bool operator()(const Step& a, const Step& b) const {
        const ByPlace less;
        return isSame(a.first, b.first) ? less(a.second, b.second) : less(a.first, b.first);
    }
};

/// Before all steps from a point.
inline Step firstStepFrom(QPointF point) {
    return {point, {-1e300, -1e300}};
}

/// Whether from the direction `start` one comes to `a` before `b`, turning clockwise with y up;
/// `start` itself comes last.
inline bool comesFirst(QPointF start, QPointF a, QPointF b) {
    const auto isFirstHalf = [start](QPointF direction) {
        const double side = cross(direction, start); // above 0 on the right of `start`
        return side > 0.0 || (side == 0.0 && dot(direction, start) < 0.0);
    };
    if (isFirstHalf(a) != isFirstHalf(b))
        return isFirstHalf(a);
    return cross(a, b) < 0.0;
}
