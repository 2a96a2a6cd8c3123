// World files, what they make of coordinates, and polygons fit for maps.

#include <drawing/errors.h>
#include <drawing/placement.h>
#include <drawing/worldfile.h>
#include <drawing/writers/geojsonwriter.h>
#include <drawing/writers/polygonring.h>

#include <QBuffer>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

using PlainRing = std::vector<QPointF>;

const WorldNumbers Metres{2.0, 0.0, 0.0, -2.0, 500001.0, 5800099.0};

void writeText(const QString& name, const QByteArray& text) {
    QFile file(name);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(text);
}

Drawing square() {
    Drawing drawing;
    drawing.size = {40, 30};
    drawing.palette = {QColor(1, 2, 3)};
    drawing.paths.begin({10, 10});
    for (const QPointF corner :
         {QPointF(20, 10), QPointF(20, 20), QPointF(10, 20), QPointF(10, 10)})
        drawing.paths.lineTo(corner);
    drawing.appendShapeOfLastPath(ShapeKind::Outline, 0);
    return drawing;
}

QJsonObject geoJson(const Drawing& drawing) {
    QByteArray text;
    QBuffer buffer(&text);
    buffer.open(QIODevice::WriteOnly);
    GeoJsonWriter(WriterOptions()).write(drawing, buffer);
    const QJsonDocument document = QJsonDocument::fromJson(text);
    EXPECT_TRUE(document.isObject()) << text.toStdString();
    return document.object();
}

PlainRing ringOf(const QJsonObject& collection) {
    PlainRing ring;
    const QJsonArray points = collection["features"][0]["geometry"]["coordinates"][0].toArray();
    for (const QJsonValue point : points)
        ring.emplace_back(point[0].toDouble(), point[1].toDouble());
    return ring;
}

double area(const PlainRing& ring) {
    double sum = 0.0;
    for (std::size_t i = 0; i + 1 < ring.size(); ++i)
        sum += (ring[i].x() * ring[i + 1].y() - ring[i + 1].x() * ring[i].y()) / 2.0;
    return sum;
}

} // namespace

TEST(WorldFile, SixNumbersThatSpanAPlane) {
    EXPECT_EQ(parseWorld("2, 0,0,-2,500001,5800099"), Metres);
    for (const char* text : {"", "1,2,3,4,5", "1,0,0,1,0,0,0", "1,0,0,x,0,0", "1,0,0,nan,0,0",
                             "0,0,0,-1,0,0", "1,2,2,4,0,0"})
        EXPECT_FALSE(parseWorld(text).has_value()) << text;
}

TEST(WorldFile, LiesBesideTheImageUnderSeveralNames) {
    const QByteArray text = "2\n0\r\n0\n-2.0\n500001\n5800099\n";
    for (const char* name : {"a.b.pgw", "a.b.pngw", "a.b.wld", "a.b.PGW"}) {
        const QTemporaryDir folder;
        EXPECT_FALSE(readWorldFile(folder.filePath("a.b.png")).has_value());
        writeText(folder.filePath(name), text);
        EXPECT_EQ(readWorldFile(folder.filePath("a.b.png")), Metres) << name;
        writeText(folder.filePath(name), "2\n0\n");
        EXPECT_THROW(readWorldFile(folder.filePath("a.b.png")), FileError);
    }
}

TEST(WorldFile, NumbersSayWhereTheMiddleOfAPixelLies) {
    // The upper left pixel's middle is 0.5 from the left and from the upper edge.
    const QTransform whole = worldTransform(Metres, {0, 0}, {40, 30});
    EXPECT_EQ(whole.map(QPointF(0.5, 29.5)), QPointF(500001, 5800099));
    EXPECT_EQ(whole.map(QPointF(1.5, 28.5)), QPointF(500003, 5800097));
    const QTransform part = worldTransform(Metres, {10, 5}, {20, 8});
    EXPECT_EQ(part.map(QPointF(0, 8)), whole.map(QPointF(10, 25)));
    const QTransform turned = worldTransform({0.0, 1.0, 1.0, 0.0, 7.0, 9.0}, {0, 0}, {40, 30});
    EXPECT_EQ(turned.map(QPointF(3.5, 29.5)), QPointF(7, 12)) << "three columns on";
}

TEST(WorldFile, RoundPiecesStayRoundWhereAnglesAre) {
    const std::vector<PathPiece> arc{arcPiece({0, 0}, {2, 0}, 1.0)};
    const auto turned = placed(arc, QTransform(0, 3, -3, 0, 5, 5));
    ASSERT_EQ(turned.size(), 1U);
    EXPECT_EQ(turned[0].kind, PieceKind::Arc);
    EXPECT_EQ(turned[0].to, QPointF(5, 11));
    EXPECT_EQ(turned[0].bulge, 1.0);
    EXPECT_EQ(placed(arc, QTransform::fromScale(1, -1))[0].bulge, -1.0) << "a mirror";
    const auto squeezed = placed(arc, QTransform::fromScale(1, 2));
    ASSERT_GT(squeezed.size(), 1U);
    EXPECT_EQ(squeezed[0].kind, PieceKind::Cubic);
    EXPECT_EQ(placed({circlePiece({1, 1}, 2)}, QTransform::fromScale(3, 3))[0].radius, 6.0);
}

TEST(WorldFile, GeoJsonSaysItsSystem) {
    Drawing drawing = square();
    EXPECT_TRUE(geoJson(drawing)["crs"].isNull());
    EXPECT_TRUE(geoJson(drawing).contains("crs"));
    EXPECT_EQ(geoJson(drawing)["units"].toString(), "px");
    drawing.world = worldTransform(Metres, {0, 0}, drawing.size);
    EXPECT_TRUE(geoJson(drawing)["crs"].isNull());
    drawing.crs = "EPSG:25832";
    const QJsonObject world = geoJson(drawing);
    EXPECT_EQ(world["crs"]["properties"]["name"].toString(), "urn:ogc:def:crs:EPSG::25832");
    const PlainRing ring = ringOf(world);
    EXPECT_EQ(ring.front(), QPointF(500020, 5800060));
    EXPECT_DOUBLE_EQ(area(ring), 400.0);
    drawing.world = QTransform(2, 0, 0, -2, 0, 0);
    EXPECT_DOUBLE_EQ(area(ringOf(geoJson(drawing))), 400.0) << "counter-clockwise in a mirror too";
    drawing.crs = "a \"system\"";
    const QJsonObject named = geoJson(drawing);
    EXPECT_EQ(named["crs"]["properties"]["name"].toString(), "a \"system\"");
}

TEST(PolygonRing, StaysInsideTheImageAndHasAnArea) {
    const QSize image(10, 10);
    EXPECT_EQ(polygonRing({{-1, 2}, {5, -3}, {5, 5}, {-1, 2}}, image),
              PlainRing({{0, 2}, {5, 0}, {5, 5}, {0, 2}}));
    EXPECT_TRUE(polygonRing({{1, 1}, {5, 5}, {1, 1}}, image).empty());
    EXPECT_TRUE(polygonRing({{1, 1}, {5, 5}, {3, 3}, {1, 1}}, image).empty());
    EXPECT_TRUE(polygonRing({{11, 1}, {15, 5}, {12, 8}, {11, 1}}, image).empty()) << "outside";
    EXPECT_TRUE(polygonRing({{1, 1}}, image).empty());
    EXPECT_TRUE(polygonRing({}, image).empty());
}

TEST(PolygonRing, LosesSpikesAndRepeatedPoints) {
    const QSize image(10, 10);
    const PlainRing plain{{1, 1}, {5, 1}, {5, 5}, {1, 1}};
    EXPECT_EQ(polygonRing({{1, 1}, {5, 1}, {5, 1}, {5, 5}, {1, 1}}, image), plain);
    EXPECT_EQ(polygonRing({{1, 1}, {5, 1}, {8, 1}, {5, 1}, {5, 5}, {1, 1}}, image), plain);
    EXPECT_EQ(polygonRing({{1, 1}, {5, 1}, {5, 5}, {1, 1}, {0, 0}, {1, 1}}, image), plain)
        << "at its start";
    EXPECT_EQ(polygonRing({{0, 0}, {1, 1}, {5, 1}, {5, 5}, {1, 1}, {0, 0}}, image),
              PlainRing({{1, 1}, {5, 1}, {5, 5}, {1, 1}}));
}
