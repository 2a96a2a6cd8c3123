#pragma once

struct OvVector {
    OvVector(double vx, double vy, double vz, bool isValid) : x(vx), y(vy), z(vz), valid(isValid) {
    }
    double x, y, z;
    bool valid;
};
