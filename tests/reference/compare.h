#pragma once

#include <QList>
#include <QString>

#include <ovpolyline.h>

/// Whether two numbers have the same bits, or both are NaN.
bool sameNumber(double a, double b);

/// Whether two lists of segment records hold the same numbers.
bool sameRecords(const QList<QList<double>>& a, const QList<QList<double>>& b);

/// Says where two lists of polylines differ, piece by piece and to the last bit; empty when they
/// do not.
QString difference(const QList<OvPolyline>& a, const QList<OvPolyline>& b);
