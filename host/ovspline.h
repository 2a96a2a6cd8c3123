#pragma once

#include "ovshape.h"

#include <QVarLengthArray>

/// A spline given by its degree and its control points.
///
/// The points of splines up to degree three are kept in the object itself, so
/// that the many short splines of a traced outline cost no allocation each.
class OvSpline final : public OvShape {
public:
    OvSpline() = default;

    void setDegree(int newDegree) {
        degree = newDegree;
    }
    int getDegree() const {
        return degree;
    }

    void appendControlPoint(const OvVector& point) {
        controlPoints.append(point);
    }
    qsizetype countControlPoints() const {
        return controlPoints.size();
    }
    /// `index` lies in [0, countControlPoints()).
    OvVector getControlPointAt(qsizetype index) const {
        return controlPoints[index];
    }

    Type getShapeType() const override {
        return Type::Spline;
    }
    std::unique_ptr<OvShape> clone() const override {
        return std::make_unique<OvSpline>(*this);
    }
    OvVector getStartPoint() const override {
        return controlPoints.isEmpty() ? OvVector::invalid() : controlPoints.first();
    }
    OvVector getEndPoint() const override {
        return controlPoints.isEmpty() ? OvVector::invalid() : controlPoints.last();
    }

private:
    int degree = 3;
    QVarLengthArray<OvVector, 4> controlPoints;
};
