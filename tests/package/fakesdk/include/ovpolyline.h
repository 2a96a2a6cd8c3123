#pragma once

#include "ovvector.h"

#include <QList>

class OvShape {
public:
    virtual ~OvShape() = default;
    virtual OvVector last() const = 0;
};

class OvSpline : public OvShape {
public:
    void setDegree(int) {
    }
    void appendControlPoint(const OvVector& point) {
        points.append(point);
    }
    OvVector last() const override {
        return points.last();
    }

private:
    QList<OvVector> points;
};

/// Remembers nothing but where it ends and how many calls there were.
class OvPolyline {
public:
    void appendVertex(const OvVector& vertex, double, double, double) {
        end = vertex;
        ++calls;
    }
    bool appendShape(const OvShape& shape, bool) {
        end = shape.last();
        ++calls;
        return false;
    }
    OvVector getEndPoint() const {
        return end;
    }

private:
    OvVector end{0, 0, 0, false};
    int calls = 0;
};
