#pragma once

#include <QList>

#include <gtest/gtest.h>
#include <ovpolyline.h>

/// Whether two numbers have the same bits, or both are NaN.
bool sameNumber(double a, double b);

/// Whether two lists of segment records hold the same numbers.
bool sameRecords(const QList<QList<double>>& a, const QList<QList<double>>& b);

/// Whether two lists of polylines are alike piece by piece, to the last bit.
testing::AssertionResult samePolylines(const QList<OvPolyline>& a, const QList<OvPolyline>& b);
