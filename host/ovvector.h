#pragma once

/// A point or direction in drawing coordinates (y up, drawing units).
///
/// An invalid vector (`valid` false) stands for "no point", as returned by
/// queries that have no answer.
class OvVector {
public:
    constexpr OvVector() = default;
    constexpr OvVector(double atX, double atY, double atZ = 0.0, bool isValid = true)
        : x(atX), y(atY), z(atZ), valid(isValid) {
    }

    static constexpr OvVector invalid() {
        return {0.0, 0.0, 0.0, false};
    }

    bool operator==(const OvVector& other) const {
        return x == other.x && y == other.y && z == other.z && valid == other.valid;
    }
    bool operator!=(const OvVector& other) const {
        return !(*this == other);
    }

    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
    bool valid = true;
};
