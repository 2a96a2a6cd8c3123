#pragma once

#include "ovvector.h"

#include <memory>

/// A piece of geometry with a start and an end: the common base of splines and polylines.
class OvShape {
public:
    enum class Type { Spline, Polyline, Other };

    virtual ~OvShape() = default;

    virtual Type getShapeType() const {
        return Type::Other;
    }
    /// A copy that lives on its own, of the same dynamic type.
    virtual std::unique_ptr<OvShape> clone() const = 0;
    /// The first point, or an invalid vector when the shape is empty.
    virtual OvVector getStartPoint() const = 0;
    /// The last point, or an invalid vector when the shape is empty.
    virtual OvVector getEndPoint() const = 0;

protected:
    OvShape() = default;
    OvShape(const OvShape&) = default;
    OvShape(OvShape&&) = default;
    OvShape& operator=(const OvShape&) = default;
    OvShape& operator=(OvShape&&) = default;
};
