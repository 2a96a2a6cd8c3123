#pragma once

/// A point or direction in drawing coordinates (y up, drawing units).
///
/// An invalid vector (`valid` false) stands for "no point", as returned by
/// queries that have no answer.
class OvVector {
public:
    constexpr OvVector() = default;
    constexpr OvVector(double x, double y, double z = 0.0, bool valid = true)
        : x(x), y(y), z(z), valid(valid) {
    }

    static constexpr OvVector invalid() {
        return {0.0, 0.0, 0.0, false};
    }

    bool operator==(const OvVector&) const = default;

    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
    bool valid = true;
};
