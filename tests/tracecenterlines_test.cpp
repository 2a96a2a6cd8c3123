// The tracer of centre lines on drawings whose truth is known.

#include "tracecenterlines.h"
#include "traceprogress.h"

#include <QImage>
#include <QPainter>
#include <QPainterPath>
#include <QPolygonF>
#include <QTransform>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <ctime>

namespace {

using Stroke = OvCenterlineStroke;

/// A drawing on white paper, in its own coordinates: pixels, y down.
class Sheet {
public:
    Sheet(int width, int height) : image(width, height, QImage::Format_RGB32) {
        image.fill(Qt::white);
    }

    void line(double x0, double y0, double x1, double y1, double width) {
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(QPen(Qt::black, width, Qt::SolidLine, Qt::FlatCap));
        painter.drawLine(QPointF(x0, y0), QPointF(x1, y1));
    }

    void circle(double x, double y, double radius, double width) {
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(QPen(Qt::black, width));
        painter.drawEllipse(QPointF(x, y), radius, radius);
    }

    /// An ellipse turned by `angle` degrees from +x to +y.
    void ellipse(double x, double y, double major, double minor, double angle, double width) {
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.translate(x, y);
        painter.rotate(angle);
        painter.setPen(QPen(Qt::black, width));
        painter.drawEllipse(QPointF(0.0, 0.0), major, minor);
    }

    QImage image;
};

double distanceOf(OvCenterlinePoint a, OvCenterlinePoint b) {
    return std::sqrt((a.x - b.x) * (a.x - b.x) + (a.y - b.y) * (a.y - b.y));
}

/// Distance of the ends of a stroke from two places, whichever way round it runs.
double endError(const Stroke& stroke, OvCenterlinePoint a, OvCenterlinePoint b) {
    const double there = std::max(distanceOf(stroke.start, a), distanceOf(stroke.end, b));
    const double back = std::max(distanceOf(stroke.start, b), distanceOf(stroke.end, a));
    return std::min(there, back);
}

TEST(TraceCenterlines, LineHasItsEndsAndWidth) {
    Sheet sheet(200, 100);
    sheet.line(20.3, 30.2, 170.6, 60.7, 3.0);
    const OvCenterlines result = OvTraceCenterlines().trace(sheet.image);
    ASSERT_EQ(result.strokes.size(), 1);
    EXPECT_EQ(result.strokes[0].shape, Stroke::Shape::Line);
    EXPECT_EQ(result.strokes[0].startNode, -1);
    EXPECT_NEAR(result.strokes[0].width, 3.0, 0.15);
    EXPECT_LT(endError(result.strokes[0], {20.3, 69.8}, {170.6, 39.3}), 0.25);
}

TEST(TraceCenterlines, CrossingIsTwoLines) {
    Sheet sheet(200, 200);
    sheet.line(20.0, 30.0, 180.0, 170.0, 2.5);
    sheet.line(20.0, 150.0, 180.0, 60.0, 2.5);
    const OvCenterlines result = OvTraceCenterlines().trace(sheet.image);
    ASSERT_EQ(result.strokes.size(), 2);
    EXPECT_TRUE(result.nodes.isEmpty());
}

TEST(TraceCenterlines, LinesThatCrossNearTheirEndsKeepThem) {
    Sheet sheet(200, 120);
    sheet.line(20.0, 20.0, 170.0, 80.0, 2.0);
    sheet.line(20.0, 86.0, 170.0, 74.0, 2.0);
    const OvCenterlines result = OvTraceCenterlines().trace(sheet.image);
    ASSERT_EQ(result.strokes.size(), 2);
    EXPECT_TRUE(result.nodes.isEmpty());
    for (const Stroke& stroke : result.strokes)
        EXPECT_NEAR(std::max(stroke.start.x, stroke.end.x), 170.0, 1.0);
}

/// Half circles in a row from the left end at `start`, as coils are drawn.
QImage halfCircles(int count, QPointF start, double diameter, double width) {
    QImage image(160, 100, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(Qt::black, width, Qt::SolidLine, Qt::FlatCap));
    for (int i = 0; i < count; ++i)
        painter.drawArc(
            QRectF(start.x() + i * diameter, start.y() - diameter / 2.0, diameter, diameter), 0,
            180 * 16);
    return image;
}

TEST(TraceCenterlines, CuspsOfArcsAreNodes) {
    const OvCenterlines result =
        OvTraceCenterlines().trace(halfCircles(3, {20.0, 48.0}, 36.0, 3.0));
    ASSERT_EQ(result.strokes.size(), 3);
    ASSERT_EQ(result.nodes.size(), 2);
    for (const OvCenterlinePoint& node : result.nodes)
        EXPECT_NEAR(node.y, 52.0, 0.6);
}

TEST(TraceCenterlines, SmallCoilsAloneAreArcs) {
    const OvCenterlines result =
        OvTraceCenterlines().trace(halfCircles(4, {20.0, 50.0}, 14.0, 1.75));
    ASSERT_EQ(result.strokes.size(), 4);
    for (const Stroke& stroke : result.strokes)
        EXPECT_EQ(stroke.shape, Stroke::Shape::Arc);
    EXPECT_EQ(result.nodes.size(), 3);
    for (const OvCenterlinePoint& node : result.nodes)
        EXPECT_NEAR(node.y, 50.0, 1.0);
}

TEST(TraceCenterlines, ThinStrokesOfOnePenHaveOneColour) {
    Sheet sheet(200, 120);
    sheet.line(20.0, 20.0, 180.0, 20.0, 4.0);
    sheet.line(20.0, 60.0, 180.0, 60.0, 1.0); // half of each of two rows
    sheet.line(20.0, 90.0, 180.0, 92.0, 1.0);
    const OvCenterlines result = OvTraceCenterlines().trace(sheet.image);
    ASSERT_EQ(result.strokes.size(), 3);
    EXPECT_EQ(result.colors.size(), 1);
}

TEST(TraceCenterlines, CornersShareTheirNodes) {
    Sheet sheet(200, 200);
    sheet.line(40.5, 39.0, 40.5, 161.0, 3.0);
    sheet.line(39.0, 159.5, 171.0, 159.5, 3.0);
    const OvCenterlines result = OvTraceCenterlines().trace(sheet.image);
    ASSERT_EQ(result.strokes.size(), 2);
    ASSERT_EQ(result.nodes.size(), 1);
    EXPECT_LT(distanceOf(result.nodes[0], {40.5, 40.5}), 0.1);
    for (const Stroke& stroke : result.strokes) {
        ASSERT_TRUE((stroke.startNode == 0) != (stroke.endNode == 0));
        EXPECT_EQ(stroke.startNode == 0 ? stroke.start : stroke.end, result.nodes[0]);
    }
}

TEST(TraceCenterlines, CircleIsOneCircle) {
    Sheet sheet(160, 160);
    sheet.circle(80.2, 79.7, 50.0, 3.0);
    const OvCenterlines result = OvTraceCenterlines().trace(sheet.image);
    ASSERT_EQ(result.strokes.size(), 1);
    EXPECT_EQ(result.strokes[0].shape, Stroke::Shape::Circle);
    EXPECT_LT(distanceOf(result.strokes[0].center, {80.2, 80.3}), 0.1);
    EXPECT_NEAR(result.strokes[0].radius, 50.0, 0.1);
}

TEST(TraceCenterlines, EllipseIsOneEllipseOnWhichLinesStand) {
    Sheet sheet(300, 260);
    sheet.ellipse(150.2, 129.7, 90.0, 50.0, 30.0, 3.0);
    sheet.line(10.0, 100.1, 68.3, 100.1, 2.5);
    const OvCenterlines result = OvTraceCenterlines().trace(sheet.image);
    ASSERT_EQ(result.strokes.size(), 2);
    const bool lineFirst = result.strokes[0].shape == Stroke::Shape::Line;
    const Stroke& ellipse = result.strokes[lineFirst ? 1 : 0];
    const Stroke& line = result.strokes[lineFirst ? 0 : 1];
    EXPECT_EQ(ellipse.shape, Stroke::Shape::Ellipse);
    EXPECT_LT(distanceOf(ellipse.center, {150.2, 130.3}), 0.1);
    EXPECT_NEAR(ellipse.radius, 90.0, 0.15);
    EXPECT_NEAR(ellipse.minorRadius, 50.0, 0.15);
    // y is up: the axis leans down to the right.
    EXPECT_NEAR(std::abs(ellipse.axis.x * std::sqrt(0.75) - ellipse.axis.y * 0.5), 1.0, 1e-4);
    ASSERT_EQ(result.nodes.size(), 1);
    const OvCenterlinePoint joint = line.startNode == 0 ? line.start : line.end;
    EXPECT_EQ(joint, result.nodes[0]);
    const auto levelAt = [&](double px, double py) {
        const double x = px - ellipse.center.x;
        const double y = py - ellipse.center.y;
        const double along = (x * ellipse.axis.x + y * ellipse.axis.y) / ellipse.radius;
        const double across = (y * ellipse.axis.x - x * ellipse.axis.y) / ellipse.minorRadius;
        return along * along + across * across;
    };
    EXPECT_NEAR(levelAt(joint.x, joint.y), 1.0, 1e-9);

    const QList<OvPolyline> polylines = OvTraceCenterlines::polylines(result);
    const OvPolyline& arcs = polylines[lineFirst ? 1 : 0];
    EXPECT_EQ(arcs.getStartPoint(), arcs.getEndPoint());
    for (qsizetype i = 0; i + 1 < arcs.countPieces(); ++i) {
        const OvVector from = arcs.getVertexAt(i);
        const OvVector to = arcs.getVertexAt(i + 1);
        EXPECT_NEAR(levelAt(from.x, from.y), 1.0, 1e-9);
        // The middle of an arc lies its bulge times half the chord to the chord's right.
        const double half = arcs.getVertexParametersAt(i)[0] / 2.0;
        EXPECT_NEAR(levelAt((from.x + to.x) / 2.0 + (to.y - from.y) * half,
                            (from.y + to.y) / 2.0 - (to.x - from.x) * half),
                    1.0, 1e-4);
    }
}

TEST(TraceCenterlines, FilledAreaIsAnOutline) {
    Sheet sheet(160, 160);
    QPainter(&sheet.image).fillRect(40, 50, 30, 25, Qt::black);
    sheet.line(10.0, 120.0, 150.0, 120.0, 3.0);
    const OvCenterlines result = OvTraceCenterlines().trace(sheet.image);
    EXPECT_EQ(result.strokes.size(), 1);
    ASSERT_EQ(result.areas.size(), 1);
    EXPECT_EQ(result.areas[0].kind, OvCenterlineArea::Kind::Solid);
}

TEST(TraceCenterlines, CornersOfWideFramesAreNoFilledAreas) {
    Sheet sheet(300, 200);
    for (const double y : {20.5, 180.5})
        sheet.line(17.5, y, 283.5, y, 6.0);
    for (const double x : {20.5, 280.5})
        sheet.line(x, 17.5, x, 183.5, 6.0);
    for (int k = 0; k < 12; ++k) // thin lines make the usual stroke
        sheet.line(20.5, 40.0 + 10.0 * k, 280.5, 40.0 + 10.0 * k, 2.0);
    EXPECT_TRUE(OvTraceCenterlines().trace(sheet.image).areas.isEmpty());
}

TEST(TraceCenterlines, HeadsAtAMarkOnOneLineAreAreas) {
    Sheet sheet(300, 120);
    sheet.line(20.0, 60.0, 280.0, 60.0, 2.0);
    sheet.line(150.0, 30.0, 150.0, 90.0, 2.0);
    {
        QPainter painter(&sheet.image);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(Qt::black);
        for (const double side : {-1.0, 1.0})
            painter.drawPolygon(QPolygonF(
                {{150.0, 60.0}, {150.0 + 18.0 * side, 56.0}, {150.0 + 18.0 * side, 64.0}}));
    }
    const OvCenterlines result = OvTraceCenterlines().trace(sheet.image);
    EXPECT_EQ(result.strokes.size(), 2);
    EXPECT_EQ(result.areas.size(), 2);
}

TEST(TraceCenterlines, LettersOfTheLinesPenHaveItsColour) {
    // Stems two pixels wide between the pixels: paper is in most of them.
    Sheet sheet(400, 300);
    for (const double y : {40.3, 260.7})
        sheet.line(20, y, 380, y, 3.0);
    for (int letter = 0; letter < 12; ++letter) {
        const double x = 60.0 + 20.4 * letter;
        sheet.line(x, 140, x, 160, 2.0);
        sheet.line(x, 140, x + 8, 140, 2.0);
        sheet.line(x, 150, x + 7, 150, 2.0);
    }
    EXPECT_EQ(OvTraceCenterlines().trace(sheet.image).colors.size(), 1);
}

TEST(TraceCenterlines, RowOfDashesIsOneStroke) {
    Sheet sheet(300, 100);
    for (int k = 0; k < 9; ++k)
        sheet.line(20.0 + 28.0 * k, 40.0 + 2.0 * k, 38.0 + 28.0 * k, 40.0 + 2.0 * (k + 18.0 / 28.0),
                   2.5);
    const OvCenterlines result = OvTraceCenterlines().trace(sheet.image);
    ASSERT_EQ(result.strokes.size(), 1);
    EXPECT_EQ(result.strokes[0].kind, Stroke::Kind::Dashed);
    ASSERT_EQ(result.strokes[0].dashes.size(), 2);
    EXPECT_NEAR(result.strokes[0].dashes[0], 18.0, 1.0);
    EXPECT_NEAR(result.strokes[0].dashes[1], 10.0, 1.0);
}

/// A frame with lines at 45 degrees, `gap` apart from corner to corner, the first one cutting off
/// `cut` pixels of the upper left corner.
Sheet hatched(double left, double top, double size, double cut, double gap) {
    Sheet sheet(static_cast<int>(size + 2.0 * left), static_cast<int>(size + 2.0 * top));
    const double right = left + size;
    const double bottom = top + size;
    for (const double y : {top, bottom})
        sheet.line(left - 1.0, y, right + 1.0, y, 2.0);
    for (const double x : {left, right})
        sheet.line(x, top, x, bottom, 2.0);
    for (double d = cut; d < 2.0 * size; d += gap) {
        const double over = std::max(0.0, d - size);
        sheet.line(left + over, top + d - over, left + d - over, top + over, 2.0);
    }
    return sheet;
}

TEST(TraceCenterlines, HatchingReachesIntoTheCornersOfItsFrame) {
    for (const double cut : {6.0, 8.0, 11.0}) {
        const Sheet sheet = hatched(30.5, 30.5, 90.0, cut, 18.0);
        const OvCenterlines result = OvTraceCenterlines().trace(sheet.image);
        const auto isHatch = [](const Stroke& s) { return s.kind == Stroke::Kind::Hatch; };
        const auto count = std::ranges::count_if(result.strokes, isHatch);
        EXPECT_EQ(count, static_cast<int>((180.0 - cut) / 18.0) + 1) << cut;
        const double height = sheet.image.height();
        EXPECT_TRUE(std::ranges::any_of(result.strokes, [&](const Stroke& s) {
            return isHatch(s) &&
                   endError(s, {30.5, height - 30.5 - cut}, {30.5 + cut, height - 30.5}) < 0.5;
        })) << cut;
        EXPECT_EQ(result.strokes.size(), count + 4) << cut;
    }
}

TEST(TraceCenterlines, HatchingAddsNothingWhereNoInkIs) {
    Sheet sheet = hatched(30.5, 30.5, 90.0, 28.0, 18.0);
    const OvCenterlines result = OvTraceCenterlines().trace(sheet.image);
    EXPECT_EQ(result.strokes.size(), 4 + 9);
}

TEST(TraceCenterlines, TeeStandsOnTheLineThatRunsOn) {
    Sheet sheet(200, 200);
    sheet.line(20.0, 100.0, 180.0, 110.0, 4.0);
    sheet.line(90.0, 20.0, 100.0, 105.0, 2.0);
    const OvCenterlines result = OvTraceCenterlines().trace(sheet.image);
    ASSERT_EQ(result.strokes.size(), 2);
    ASSERT_EQ(result.nodes.size(), 1);
    const bool first = result.strokes[0].width > result.strokes[1].width;
    const Stroke& base = result.strokes[first ? 0 : 1];
    EXPECT_EQ(base.startNode, -1);
    EXPECT_EQ(base.endNode, -1);
    const double dx = base.end.x - base.start.x;
    const double dy = base.end.y - base.start.y;
    const double off =
        (dx * (result.nodes[0].y - base.start.y) - dy * (result.nodes[0].x - base.start.x)) /
        std::sqrt(dx * dx + dy * dy);
    EXPECT_LT(std::abs(off), 1e-9);
    EXPECT_LT(result.widths[0], result.widths[1]);
}

TEST(TraceCenterlines, WideLineThatAThinOneGoesOnFromIsThere) {
    // An eave: the thin line leaves the corner of the wide ones almost straight on.
    Sheet sheet(700, 200);
    sheet.line(40.0, 40.0, 140.0, 76.0, 7.0);
    sheet.line(140.0, 76.0, 60.0, 140.0, 7.0);
    sheet.line(140.0, 76.0, 680.0, 76.0, 3.5);
    const OvCenterlines result = OvTraceCenterlines().trace(sheet.image);
    const std::array<std::array<OvCenterlinePoint, 2>, 3> lines{
        {{{{40.0, 160.0}, {140.0, 124.0}}},
         {{{140.0, 124.0}, {60.0, 60.0}}},
         {{{140.0, 124.0}, {680.0, 124.0}}}}};
    for (const auto& [from, to] : lines)
        EXPECT_TRUE(
            std::any_of(result.strokes.begin(), result.strokes.end(),
                        [&](const Stroke& stroke) { return endError(stroke, from, to) < 1.0; }))
            << from.x << ' ' << from.y << " to " << to.x << ' ' << to.y;
}

/// The length of a stroke; of arcs over half a turn that of the half.
double lengthOf(const Stroke& stroke) {
    const double chord = distanceOf(stroke.start, stroke.end);
    if (stroke.shape != Stroke::Shape::Arc)
        return chord;
    return 2.0 * stroke.radius * std::asin(std::min(1.0, chord / (2.0 * stroke.radius)));
}

TEST(TraceCenterlines, CurvesAreRunsThatMeetAndNeverTurnBack) {
    for (int k = 0; k < 12; ++k) {
        // A wave of a sharp and a wide bend, of one bit.
        QPainterPath path(QPointF(20.5, 100.0));
        path.cubicTo(30.0, 20.0 - 3.0 * k, 46.0 + k, 20.0 - 3.0 * k, 60.5 + k, 90.0);
        path.cubicTo(70.0 + k, 130.0 + 4.0 * k, 80.0 + k, 130.0 + 4.0 * k, 100.5 + 2.0 * k, 70.0);
        Sheet sheet(150, 200);
        QPainter painter(&sheet.image);
        painter.setPen(QPen(Qt::black, k % 2 == 0 ? 1.0 : 2.0));
        painter.drawPath(path);
        painter.end();
        const OvCenterlines result = OvTraceCenterlines().trace(sheet.image);
        int free = 0;
        double length = 0.0;
        for (const Stroke& stroke : result.strokes) {
            free += (stroke.startNode < 0 ? 1 : 0) + (stroke.endNode < 0 ? 1 : 0);
            length += lengthOf(stroke);
        }
        EXPECT_EQ(free, 2) << k;
        EXPECT_NEAR(length, path.length(), 0.02 * path.length()) << k;
    }
}

TEST(TraceCenterlines, SameImageGivesTheSameValuesTwice) {
    Sheet sheet(200, 200);
    sheet.line(20.0, 100.0, 180.0, 110.0, 4.0);
    sheet.circle(90.0, 60.0, 40.0, 2.0);
    const OvCenterlines a = OvTraceCenterlines().trace(sheet.image);
    const OvCenterlines b = OvTraceCenterlines().trace(sheet.image);
    ASSERT_EQ(a.strokes.size(), b.strokes.size());
    for (qsizetype i = 0; i < a.strokes.size(); ++i) {
        EXPECT_EQ(a.strokes[i].start, b.strokes[i].start);
        EXPECT_EQ(a.strokes[i].end, b.strokes[i].end);
        EXPECT_EQ(a.strokes[i].radius, b.strokes[i].radius);
    }
}

TEST(TraceCenterlines, MirroredDrawingIsTheMirroredResult) {
    Sheet sheet(200, 160);
    sheet.line(20.3, 30.2, 170.6, 60.7, 3.0);
    sheet.line(60.0, 20.0, 90.0, 140.0, 2.0);
    const OvCenterlines a = OvTraceCenterlines().trace(sheet.image);
    const OvCenterlines b = OvTraceCenterlines().trace(sheet.image.mirrored(true, false));
    ASSERT_EQ(a.strokes.size(), b.strokes.size());
    for (const Stroke& stroke : a.strokes) {
        const OvCenterlinePoint start{200.0 - stroke.start.x, stroke.start.y};
        const OvCenterlinePoint end{200.0 - stroke.end.x, stroke.end.y};
        EXPECT_TRUE(std::any_of(b.strokes.begin(), b.strokes.end(), [&](const Stroke& other) {
            return endError(other, start, end) < 0.1;
        }));
    }
}

/// Four boards in each of two rows, between nine posts.
Sheet boardsBehindPosts() {
    Sheet sheet(360, 160);
    for (int k = 0; k < 4; ++k) {
        const double left = 20.0 + 70.0 * k;
        for (const double y : {50.0, 90.0})
            sheet.line(left + 16.0, y, left + 70.0, y, 2.5);
        sheet.line(left, 20.0, left, 140.0, 3.0);
        sheet.line(left + 16.0, 20.0, left + 16.0, 140.0, 3.0);
    }
    sheet.line(300.0, 20.0, 300.0, 140.0, 3.0);
    return sheet;
}

TEST(TraceCenterlines, BoardsBehindPostsAreNoDashes) {
    const OvCenterlines result = OvTraceCenterlines().trace(boardsBehindPosts().image);
    EXPECT_EQ(result.strokes.size(), 8 + 9);
    for (const Stroke& stroke : result.strokes)
        EXPECT_NE(stroke.kind, Stroke::Kind::Dashed);
}

/// A frame with hatching beside a circle and a line that crosses it.
Sheet severalShapes() {
    Sheet sheet = hatched(30.5, 30.5, 90.0, 9.0, 18.0);
    Sheet wide(320, 151);
    QPainter(&wide.image).drawImage(0, 0, sheet.image);
    wide.circle(220.2, 75.7, 50.0, 2.5);
    wide.line(160.0, 70.0, 300.0, 90.0, 3.0);
    return wide;
}

/// Whether each stroke of `a` is one of `b` once `moved`, ends within `most` pixels, free ones
/// within `ofWidth` of the width more.
template <typename Move>
void expectMoved(const OvCenterlines& a, const OvCenterlines& b, Move moved, double most,
                 double ofWidth = 0.0) {
    ASSERT_GT(a.strokes.size(), 10);
    ASSERT_EQ(a.strokes.size(), b.strokes.size());
    for (const Stroke& stroke : a.strokes)
        EXPECT_TRUE(std::any_of(b.strokes.begin(), b.strokes.end(),
                                [&](const Stroke& other) {
                                    if (other.shape != stroke.shape || other.kind != stroke.kind)
                                        return false;
                                    if (stroke.shape == Stroke::Shape::Circle)
                                        return distanceOf(other.center, moved(stroke.center)) <
                                               most;
                                    const bool free = stroke.startNode < 0 || stroke.endNode < 0;
                                    return endError(other, moved(stroke.start), moved(stroke.end)) <
                                           most + (free ? stroke.width * ofWidth : 0.0);
                                }))
            << stroke.start.x << ' ' << stroke.start.y;
}

TEST(TraceCenterlines, TurnedDrawingIsTheTurnedResult) {
    const Sheet sheet = severalShapes();
    const double width = sheet.image.width();
    // Whether the pen was round may be told one way and not the other.
    expectMoved(
        OvTraceCenterlines().trace(sheet.image),
        OvTraceCenterlines().trace(sheet.image.transformed(QTransform().rotate(90.0))),
        [width](OvCenterlinePoint p) {
            return OvCenterlinePoint{p.y, width - p.x};
        },
        0.1, 0.25);
}

TEST(TraceCenterlines, DrawingWithAMarginIsTheSameDrawing) {
    const Sheet sheet = severalShapes();
    Sheet wide(sheet.image.width() + 90, sheet.image.height() + 60);
    QPainter(&wide.image).drawImage(37, 21, sheet.image);
    const double below = wide.image.height() - sheet.image.height() - 21;
    expectMoved(
        OvTraceCenterlines().trace(sheet.image), OvTraceCenterlines().trace(wide.image),
        [below](OvCenterlinePoint p) {
            return OvCenterlinePoint{p.x + 37.0, p.y + below};
        },
        0.05);
}

TEST(TraceCenterlines, DrawingAtTwiceTheSizeIsTwiceTheResult) {
    Sheet sheet = boardsBehindPosts();
    sheet.circle(330.2, 70.3, 25.0, 2.5);
    const QImage twice =
        sheet.image.scaled(2 * sheet.image.size(), Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    expectMoved(
        OvTraceCenterlines().trace(sheet.image), OvTraceCenterlines().trace(twice),
        [](OvCenterlinePoint p) {
            return OvCenterlinePoint{2.0 * p.x, 2.0 * p.y};
        },
        1.0);
}

TEST(TraceCenterlines, EachColourOfLinesIsOne) {
    QImage image(300, 160, QImage::Format_RGB32);
    image.fill(Qt::white);
    {
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        for (const QColor& color : {QColor(200, 0, 0), QColor(0, 0, 190)})
            for (int k = 0; k < 3; ++k) {
                painter.setPen(QPen(color, 2.5, Qt::SolidLine, Qt::FlatCap));
                const double y = 20.0 + 20.0 * k + (color.red() > 0 ? 0.0 : 70.0);
                painter.drawLine(QPointF(20.0, y), QPointF(280.0, y + 5.0));
            }
    }
    const OvCenterlines result = OvTraceCenterlines().trace(image);
    ASSERT_EQ(result.strokes.size(), 6);
    ASSERT_EQ(result.colors.size(), 2);
    for (const Stroke& stroke : result.strokes) {
        const QRgb color = result.colors[stroke.color];
        EXPECT_EQ(qRed(color) > qBlue(color), stroke.start.y > 90.0);
    }
}

TEST(TraceCenterlines, EmptyImagesGiveNothing) {
    EXPECT_TRUE(OvTraceCenterlines().trace(QImage()).strokes.isEmpty());
    EXPECT_TRUE(OvTraceCenterlines().trace(Sheet(30, 30).image).strokes.isEmpty());
    EXPECT_TRUE(OvTraceCenterlines().trace(Sheet(1, 1).image).areas.isEmpty());
}

class StopAt : public OvTraceProgress {
public:
    explicit StopAt(int calls) : left(calls) {
    }
    bool report(double fraction) override {
        rises = rises && fraction >= last && fraction <= 1.0;
        last = fraction;
        return left-- > 0;
    }
    int left;
    double last = 0.0;
    bool rises = true;
};

TEST(TraceCenterlines, ProgressRisesAndCancels) {
    Sheet sheet(200, 200);
    sheet.line(20.0, 30.0, 180.0, 170.0, 2.5);
    StopAt all(1000000);
    OvTraceCenterlines tracer;
    tracer.setProgress(&all);
    EXPECT_EQ(tracer.trace(sheet.image).strokes.size(), 1);
    EXPECT_TRUE(all.rises);
    const int calls = 1000000 - all.left;
    EXPECT_GT(calls, 3);
    StopAt early(2);
    tracer.setProgress(&early);
    EXPECT_TRUE(tracer.trace(sheet.image).strokes.isEmpty());
    EXPECT_EQ(early.left, -1) << "nothing is reported after the host has said no";
}

// What a fuzzer found: half a head beside the image's edge, whose other half would lie outside.
TEST(TraceCenterlines, AreasStayInTheImage) {
    const QStringList rows{QStringLiteral("#.......#.#.#...........##.#.#"),
                           QStringLiteral("...##...#.........###..#..#..#"),
                           QStringLiteral("###.#..####.#.#..#...##.###.#."),
                           QStringLiteral("#....#.##.##.#.#.###..#.#....#"),
                           QStringLiteral("..............................")};
    QImage image(30, 5, QImage::Format_Grayscale8);
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            image.scanLine(y)[x] = rows[y][x] == QLatin1Char('#') ? 0 : 255;
    const OvCenterlines result = OvTraceCenterlines().trace(image);
    for (const OvCenterlineArea& area : result.areas)
        for (const QList<OvCenterlinePoint>& ring : area.rings)
            for (const OvCenterlinePoint& p : ring) {
                EXPECT_TRUE(p.x >= -1.0 && p.x <= image.width() + 1.0) << p.x;
                EXPECT_TRUE(p.y >= -1.0 && p.y <= image.height() + 1.0) << p.y;
            }
}

TEST(TraceCenterlines, PolylinesHaveBulgesAndWidths) {
    Sheet sheet(160, 160);
    sheet.circle(80.0, 80.0, 50.0, 3.0);
    const OvCenterlines result = OvTraceCenterlines().trace(sheet.image);
    const QList<OvPolyline> polylines = OvTraceCenterlines::polylines(result);
    ASSERT_EQ(polylines.size(), 1);
    ASSERT_EQ(polylines[0].countPieces(), 3);
    EXPECT_EQ(polylines[0].getVertexParametersAt(0)[0], 1.0);
    EXPECT_EQ(polylines[0].getVertexParametersAt(0)[1], result.strokes[0].width);
}

/// An area of dots whose corners touch has one node with thousands of lines: no stroke leads
/// through.
TEST(TraceCenterlines, HalftoneIsNoKnotToUntieForSeconds) {
    const std::array<int, 16> order{0, 8, 2, 10, 12, 4, 14, 6, 3, 11, 1, 9, 15, 7, 13, 5};
    QImage image(240, 240, QImage::Format_Grayscale8);
    image.fill(Qt::white);
    for (int y = 20; y < 220; ++y)
        for (int x = 20; x < 220; ++x)
            if (order[static_cast<std::size_t>(y % 4 * 4 + x % 4)] < 10)
                image.setPixel(x, y, qRgb(0, 0, 0));
    const std::clock_t start = std::clock();
    OvTraceCenterlines().trace(image);
    EXPECT_LT(std::clock() - start, CLOCKS_PER_SEC); // hundredths of a second; untied, 2.5
}

} // namespace
