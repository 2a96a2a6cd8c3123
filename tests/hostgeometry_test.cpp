#include <ovplugininfo.h>
#include <ovpolyline.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

TEST(HostPolyline, StartsEmpty) {
    const OvPolyline polyline;
    EXPECT_EQ(polyline.countPieces(), 0);
    EXPECT_FALSE(polyline.getStartPoint().valid);
    EXPECT_FALSE(polyline.getEndPoint().valid);
}

TEST(HostPolyline, ReadsBackVerticesExactly) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    OvPolyline polyline;
    polyline.appendVertex(OvVector(1, 2));
    polyline.appendVertex(OvVector(3, 4, 5, true), 0.5, 1, 2);
    polyline.appendVertex(OvVector(6, 7, 0, false));
    polyline.appendVertex(OvVector(8, nan, -0.0), -0.0);
    ASSERT_EQ(polyline.countPieces(), 4);
    EXPECT_EQ(polyline.getVertexAt(0), OvVector(1, 2));
    EXPECT_EQ(polyline.getVertexParametersAt(0), (std::array{0.0, 0.0, 0.0}));
    EXPECT_EQ(polyline.getVertexAt(1), OvVector(3, 4, 5));
    EXPECT_EQ(polyline.getVertexParametersAt(1), (std::array{0.5, 1.0, 2.0}));
    EXPECT_FALSE(polyline.getVertexAt(2).valid);
    EXPECT_TRUE(std::isnan(polyline.getVertexAt(3).y));
    EXPECT_TRUE(std::signbit(polyline.getVertexAt(3).z));
    EXPECT_TRUE(std::signbit(polyline.getVertexParametersAt(3)[0]));
    EXPECT_EQ(polyline.getStartPoint(), OvVector(1, 2));
}

TEST(HostPolyline, ReadsBackShapesExactly) {
    OvSpline flat;
    flat.setDegree(2);
    for (const OvVector& point : {OvVector(0, 0), OvVector(1, 5), OvVector(2, 0)})
        flat.appendControlPoint(point);
    OvSpline spatial;
    spatial.setDegree(5);
    for (int i = 0; i < 6; ++i)
        spatial.appendControlPoint(OvVector(i, i, i, i % 2 == 0));
    OvPolyline polyline;
    EXPECT_TRUE(polyline.appendShape(flat, false));
    polyline.appendShape(spatial, true);
    polyline.appendShape(OvSpline());
    ASSERT_EQ(polyline.countPieces(), 3);
    EXPECT_FALSE(polyline.isVertexAt(0));
    EXPECT_EQ(polyline.getSplineAt(0).getControlPointAt(1), OvVector(1, 5));
    EXPECT_EQ(polyline.getSplineAt(1).getDegree(), 5);
    EXPECT_EQ(polyline.getSplineAt(1).countControlPoints(), 6);
    EXPECT_EQ(polyline.getSplineAt(1).getControlPointAt(5), OvVector(5, 5, 5, false));
    EXPECT_FALSE(polyline.getShapeFlagAt(0));
    EXPECT_TRUE(polyline.getShapeFlagAt(1));
    EXPECT_EQ(polyline.getSplineAt(2).countControlPoints(), 0);
    EXPECT_EQ(polyline.getShapeAt(1)->getShapeType(), OvShape::Type::Spline);
}

TEST(HostPolyline, EndFollowsThePieces) {
    OvPolyline polyline;
    polyline.appendVertex(OvVector(1, 1));
    EXPECT_EQ(polyline.getEndPoint(), OvVector(1, 1));
    OvSpline spline;
    spline.appendControlPoint(OvVector(1, 1));
    spline.appendControlPoint(OvVector(4, 2));
    polyline.appendShape(spline);
    EXPECT_EQ(polyline.getEndPoint(), OvVector(4, 2));
    polyline.appendShape(OvSpline());
    EXPECT_EQ(polyline.getEndPoint(), OvVector(4, 2)) << "an empty shape has no end";
}

TEST(HostPolyline, TakesAnyShapeItselfIncluded) {
    OvPolyline polyline;
    polyline.appendVertex(OvVector(1, 1));
    polyline.appendVertex(OvVector(2, 1));
    polyline.appendShape(polyline, true);
    ASSERT_EQ(polyline.countPieces(), 3);
    EXPECT_FALSE(polyline.isSplineAt(2));
    const auto inner = polyline.getShapeAt(2);
    EXPECT_EQ(inner->getShapeType(), OvShape::Type::Polyline);
    EXPECT_EQ(static_cast<const OvPolyline&>(*inner).countPieces(), 2);
    EXPECT_EQ(polyline.getEndPoint(), OvVector(2, 1));
}

TEST(HostPolyline, ReadsBackSplinesThatContinueEachOther) {
    const double negativeZero = -0.0;
    const QList<QList<OvVector>> points{{OvVector(1, 2), OvVector(3, 4), OvVector(5, 6)},
                                        {OvVector(5, 6), OvVector(7, 8), OvVector(0, 0)},
                                        {OvVector(negativeZero, 0), OvVector(1, 1)},
                                        {},
                                        {OvVector(1, 1), OvVector(2, 2, 3)},
                                        {OvVector(2, 2, 3), OvVector(9, 9)},
                                        {OvVector(9, 9), OvVector(8, 8), OvVector(7, 7)}};
    OvPolyline polyline;
    polyline.appendVertex(OvVector(1, 2));
    for (const auto& controlPoints : points) {
        OvSpline spline;
        spline.setDegree(2);
        for (const OvVector& point : controlPoints)
            spline.appendControlPoint(point);
        polyline.appendShape(spline);
    }
    polyline.appendVertex(OvVector(7, 7), 0.5, 1.0, 2.0);
    ASSERT_EQ(polyline.countPieces(), points.size() + 2);
    for (qsizetype i = 0; i < points.size(); ++i) {
        const OvSpline spline = polyline.getSplineAt(i + 1);
        ASSERT_EQ(spline.countControlPoints(), points[i].size());
        for (int k = 0; k < points[i].size(); ++k) {
            EXPECT_EQ(spline.getControlPointAt(k), points[i][k]);
            EXPECT_EQ(std::signbit(spline.getControlPointAt(k).x), std::signbit(points[i][k].x));
        }
    }
    EXPECT_EQ(polyline.getVertexParametersAt(8), (std::array{0.5, 1.0, 2.0}));
}

TEST(HostPolyline, CopiesAreIndependentValues) {
    OvPolyline polyline;
    polyline.appendVertex(OvVector(1, 1));
    const OvPolyline copy = polyline;
    polyline.appendVertex(OvVector(2, 2));
    EXPECT_EQ(copy.countPieces(), 1);
    EXPECT_EQ(copy.getEndPoint(), OvVector(1, 1));
    EXPECT_EQ(polyline.countPieces(), 2);
}

TEST(HostPolyline, HoldsManyPieces) {
    constexpr int Pieces = 100000;
    OvPolyline polyline;
    OvSpline spline;
    spline.setDegree(2);
    for (int i = 0; i < 3; ++i)
        spline.appendControlPoint(OvVector(i, i));
    for (int i = 0; i < Pieces; ++i) {
        if (i % 2 == 0)
            polyline.appendVertex(OvVector(i, -i));
        else
            polyline.appendShape(spline);
    }
    ASSERT_EQ(polyline.countPieces(), Pieces);
    EXPECT_EQ(polyline.getVertexAt(Pieces - 2), OvVector(Pieces - 2, 2 - Pieces));
    EXPECT_TRUE(polyline.isSplineAt(Pieces - 1));
}

TEST(HostPluginInfo, KeepsTheOrderOfItsKeys) {
    OvPluginInfo info;
    info.set("Z", 1);
    info.set("A", "two");
    info.set("Z", 3);
    EXPECT_EQ(info.getKeys(), QList<QString>({"Z", "A"}));
    EXPECT_EQ(info.get("Z").toInt(), 3);
    EXPECT_EQ(info.get("A").toString(), "two");
    EXPECT_FALSE(info.get("none").isValid());
}
