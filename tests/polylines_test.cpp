#include <polylines.h>

#include <gtest/gtest.h>

#include <limits>

using namespace ovtrace;

namespace {

Segment lineFrom(double x1, double y1, double x2, double y2) {
    return {Segment::Line, x1, y1, x2, y2, 0, 0};
}

/// The start points of the polylines, with y growing downwards again.
QList<QPair<double, double>> starts(PolylineOutput& output, int height) {
    QList<QPair<double, double>> points;
    for (const OvPolyline& polyline : output.takePolylines())
        points.append({polyline.getStartPoint().x, height - polyline.getStartPoint().y});
    return points;
}

} // namespace

TEST(Polylines, OfEqualStartsTheLastRemains) {
    PolylineOutput output(20, 10);
    output.add(0, {lineFrom(3, 4, 5, 6)});
    output.add(0, {lineFrom(9, 1, 5, 6)});
    output.add(2, {lineFrom(3, 4, 7, 8)});
    output.finish();
    const QList<OvPolyline> polylines = output.takePolylines();
    EXPECT_EQ(output.takeLayers(), QList<int>({0, 2}));
    ASSERT_EQ(polylines.size(), 2);
    EXPECT_EQ(polylines[0].getStartPoint(), OvVector(9, 9));
    EXPECT_EQ(polylines[1].getEndPoint(), OvVector(7, 2));
}

TEST(Polylines, OfEqualStartsTheHighestLayerRemainsInWhateverOrderTheyCome) {
    PolylineOutput output(20, 10);
    output.add(2, {lineFrom(3, 4, 7, 8)});
    output.add(2, {lineFrom(3, 4, 6, 8)});
    output.add(0, {lineFrom(3, 4, 5, 6)});
    output.add(1, {lineFrom(9, 1, 5, 6)});
    output.finish();
    const QList<OvPolyline> polylines = output.takePolylines();
    EXPECT_EQ(output.takeLayers(), QList<int>({1, 2}));
    ASSERT_EQ(polylines.size(), 2);
    EXPECT_EQ(polylines[1].getEndPoint(), OvVector(6, 2)) << "the last of its layer";
}

TEST(Polylines, KeysWrapAtTheWidth) {
    PolylineOutput output(20, 10);
    output.add(0, {lineFrom(23, 4, 5, 6)});
    output.add(1, {lineFrom(3, 5, 7, 8)}); // 20 * 5 + 3 = 20 * 4 + 23
    output.finish();
    EXPECT_EQ(output.takePolylines().size(), 1);
    EXPECT_EQ(output.takeLayers(), QList<int>{1});
}

TEST(Polylines, ComeInRasterOrderOfTheirStarts) {
    PolylineOutput output(20, 10);
    output.add(0, {lineFrom(5, 5, 0, 0)});
    output.add(1, {lineFrom(6, 2, 0, 0)});
    output.add(2, {lineFrom(4, 5, 0, 0)});
    output.finish();
    EXPECT_EQ(starts(output, 10), (QList<QPair<double, double>>{{6, 2}, {4, 5}, {5, 5}}));
    EXPECT_EQ(output.takeLayers(), QList<int>({1, 2, 0}));
}

TEST(Polylines, ADegenerateLineHasTwoEqualVertices) {
    PolylineOutput output(4, 4);
    output.add(0, {lineFrom(0.5, 0, 0.5, 0)});
    output.finish();
    const OvPolyline polyline = output.takePolylines().first();
    ASSERT_EQ(polyline.countPieces(), 2);
    EXPECT_EQ(polyline.getVertexAt(0), OvVector(0.5, 4));
    EXPECT_EQ(polyline.getVertexAt(1), OvVector(0.5, 4));
}

TEST(Polylines, YIsFlippedAtTheHeight) {
    EXPECT_EQ(transform(OvVector(3.5, 2.0), 10), OvVector(3.5, 8.0));
    const OvVector other = transform(OvVector(1, 2, 3, false), 10);
    EXPECT_EQ(other, OvVector(1, 8, 3, false)) << "z and validity stay";
}

TEST(Polylines, CurvesContinueFromTheCurrentEnd) {
    PolylineOutput output(20, 10);
    output.add(0, {lineFrom(0, 0, 1, 1), {Segment::Curve, 7, 7, 2, 3, 4, 5}});
    output.finish();
    const OvPolyline polyline = output.takePolylines().first();
    ASSERT_EQ(polyline.countPieces(), 3);
    ASSERT_TRUE(polyline.isSplineAt(2));
    const OvSpline spline = polyline.getSplineAt(2);
    EXPECT_EQ(spline.getDegree(), 2);
    ASSERT_EQ(spline.countControlPoints(), 3);
    EXPECT_EQ(spline.getControlPointAt(0), OvVector(1, 9)) << "not the record's own start";
    EXPECT_EQ(spline.getControlPointAt(1), OvVector(2, 7));
    EXPECT_EQ(spline.getControlPointAt(2), OvVector(4, 5));
}

TEST(Polylines, AnyTypeButALineIsACurve) {
    PolylineOutput output(20, 10);
    output.add(0, {{std::numeric_limits<double>::quiet_NaN(), 0, 0, 1, 1, 2, 2}});
    output.finish();
    EXPECT_TRUE(output.takePolylines().first().isSplineAt(1));
}

TEST(Polylines, PathsWithoutRecordsAreSkipped) {
    PolylineOutput output(20, 10);
    output.add(0, {});
    output.finish();
    EXPECT_TRUE(output.takePolylines().isEmpty());
    EXPECT_TRUE(output.takeLayers().isEmpty());
}
