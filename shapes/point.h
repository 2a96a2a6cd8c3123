#pragma once

#include <cmath>

namespace ovtrace {

/// A place or a vector in the plane, in pixels; x to the right, y down.
struct Point {
    double x = 0.0;
    double y = 0.0;

    friend bool operator==(const Point& a, const Point& b) {
        return a.x == b.x && a.y == b.y;
    }
    friend bool operator!=(const Point& a, const Point& b) {
        return !(a == b);
    }

    Point& operator+=(Point other) {
        x += other.x;
        y += other.y;
        return *this;
    }
    Point& operator-=(Point other) {
        x -= other.x;
        y -= other.y;
        return *this;
    }
};

inline Point operator+(Point a, Point b) {
    return {a.x + b.x, a.y + b.y};
}

inline Point operator-(Point a, Point b) {
    return {a.x - b.x, a.y - b.y};
}

inline Point operator-(Point a) {
    return {-a.x, -a.y};
}

inline Point operator*(Point a, double factor) {
    return {a.x * factor, a.y * factor};
}

inline Point operator*(double factor, Point a) {
    return a * factor;
}

inline Point operator/(Point a, double divisor) {
    return {a.x / divisor, a.y / divisor};
}

inline double dot(Point a, Point b) {
    return a.x * b.x + a.y * b.y;
}

/// Positive when `b` lies from `a` in the sense from +x to +y.
inline double cross(Point a, Point b) {
    return a.x * b.y - a.y * b.x;
}

inline double lengthSquared(Point a) {
    return dot(a, a);
}

inline double length(Point a) {
    return std::sqrt(lengthSquared(a));
}

inline double distance(Point a, Point b) {
    return length(b - a);
}

/// `a` turned by a quarter from +x to +y.
inline Point turnedQuarter(Point a) {
    return {-a.y, a.x};
}

/// `a` with length 1; a vector without length stays as it is.
inline Point unit(Point a) {
    const double size = length(a);
    return size > 0.0 ? a / size : a;
}

inline Point middle(Point a, Point b) {
    return {(a.x + b.x) / 2.0, (a.y + b.y) / 2.0};
}

inline bool isFinite(Point a) {
    return std::isfinite(a.x) && std::isfinite(a.y);
}

} // namespace ovtrace
