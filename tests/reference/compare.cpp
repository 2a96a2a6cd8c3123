#include "compare.h"

#include <bit>
#include <cmath>

bool sameNumber(double a, double b) {
    return (std::isnan(a) && std::isnan(b)) ||
           std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b);
}

bool sameRecords(const QList<QList<double>>& a, const QList<QList<double>>& b) {
    if (a.size() != b.size())
        return false;
    for (qsizetype i = 0; i < a.size(); ++i) {
        if (a[i].size() != b[i].size())
            return false;
        for (qsizetype k = 0; k < a[i].size(); ++k) {
            if (!sameNumber(a[i][k], b[i][k]))
                return false;
        }
    }
    return true;
}

namespace {

bool samePoint(const OvVector& a, const OvVector& b) {
    return sameNumber(a.x, b.x) && sameNumber(a.y, b.y) && sameNumber(a.z, b.z) &&
           a.valid == b.valid;
}

bool sameSpline(const OvSpline& a, const OvSpline& b) {
    if (a.getDegree() != b.getDegree() || a.countControlPoints() != b.countControlPoints())
        return false;
    for (qsizetype i = 0; i < a.countControlPoints(); ++i) {
        if (!samePoint(a.getControlPointAt(i), b.getControlPointAt(i)))
            return false;
    }
    return true;
}

bool samePiece(const OvPolyline& a, const OvPolyline& b, qsizetype i) {
    if (a.isVertexAt(i) != b.isVertexAt(i) || a.isSplineAt(i) != b.isSplineAt(i))
        return false;
    if (a.isVertexAt(i))
        return samePoint(a.getVertexAt(i), b.getVertexAt(i)) &&
               a.getVertexParametersAt(i) == b.getVertexParametersAt(i);
    return a.isSplineAt(i) && sameSpline(a.getSplineAt(i), b.getSplineAt(i)) &&
           a.getShapeFlagAt(i) == b.getShapeFlagAt(i);
}

} // namespace

QString difference(const QList<OvPolyline>& a, const QList<OvPolyline>& b) {
    if (a.size() != b.size())
        return QString("%1 polylines against %2").arg(a.size()).arg(b.size());
    for (qsizetype k = 0; k < a.size(); ++k) {
        if (a[k].countPieces() != b[k].countPieces())
            return QString("polyline %1: %2 pieces against %3")
                .arg(k)
                .arg(a[k].countPieces())
                .arg(b[k].countPieces());
        for (qsizetype i = 0; i < a[k].countPieces(); ++i) {
            if (!samePiece(a[k], b[k], i))
                return QString("polyline %1, piece %2").arg(k).arg(i);
        }
    }
    return {};
}
