// The files that the program writes, read back.

#include "support/program.h"

#include <drawing/geometry/pathpiece.h>

#include <QCryptographicHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QPainter>
#include <QSet>
#include <QStandardPaths>
#include <QXmlStreamReader>

#include <algorithm>
#include <cmath>

namespace {

const QStringList Samples{"logo.png", "drawing.png", "text.png", "photo.png"};

/// The arguments that trace outlines of few, flat colours.
QStringList flat(const QString& image) {
    return {image,    "--method", "outlines", "--colors", "16",         "--set", "mincolorratio=0",
            "--blur", "0",        "--cycles", "8",        "--min-path", "12"};
}

class Formats : public ProgramTest {
protected:
    QByteArray traced(const QStringList& arguments) const {
        const auto result = run(arguments + QStringList{"-o", "-"});
        EXPECT_EQ(result.status, 0) << result.errors.toStdString();
        return result.output;
    }
    static QJsonArray outlines(const QStringList& arguments) {
        const auto result =
            run(arguments + QStringList{"--method", "outlines", "-f", "json", "-o", "-"});
        return QJsonDocument::fromJson(result.output).object()["polylines"].toArray();
    }
};

/// A group of a DXF file.
struct Group {
    int code;
    QByteArray value;
};

QList<Group> groupsOf(const QByteArray& dxf) {
    QList<Group> groups;
    const QList<QByteArray> lines = dxf.split('\n');
    EXPECT_EQ(lines.size() % 2, 1) << "pairs, and an end of line";
    for (qsizetype i = 0; i + 1 < lines.size(); i += 2) {
        bool isNumber = false;
        groups.append({lines[i].toInt(&isNumber), lines[i + 1]});
        EXPECT_TRUE(isNumber) << lines[i].toStdString();
    }
    return groups;
}

/// The section of that name, without its first and last groups.
QList<Group> section(const QList<Group>& groups, const QByteArray& name) {
    QList<Group> found;
    bool inside = false;
    for (qsizetype i = 0; i < groups.size(); ++i) {
        if (i > 0 && groups[i - 1].code == 0 && groups[i - 1].value == "SECTION") {
            inside = groups[i].value == name;
            continue;
        }
        if (groups[i].code == 0 && groups[i].value == "ENDSEC")
            inside = false;
        if (inside)
            found.append(groups[i]);
    }
    return found;
}

QPointF headerPoint(const QList<Group>& header, const QByteArray& name) {
    for (qsizetype i = 0; i + 2 < header.size(); ++i) {
        if (header[i].code == 9 && header[i].value == name)
            return {header[i + 1].value.toDouble(), header[i + 2].value.toDouble()};
    }
    ADD_FAILURE() << name.toStdString();
    return {};
}

int countEntities(const QList<Group>& entities, const QByteArray& type) {
    return static_cast<int>(
        std::count_if(entities.begin(), entities.end(),
                      [&](const Group& group) { return group.code == 0 && group.value == type; }));
}

/// What must hold in every file: unique handles below the seed, owners and layers that exist,
/// only numbers where numbers belong, the layer names' letters, nothing after the end.
void checkStructure(const QByteArray& dxf, bool hasHandles) {
    const QList<Group> groups = groupsOf(dxf);
    ASSERT_GT(groups.size(), 10);
    EXPECT_EQ(groups.last().code, 0);
    EXPECT_EQ(groups.last().value, "EOF");
    QSet<QByteArray> handles;
    QSet<QByteArray> layers;
    int depth = 0;
    for (qsizetype i = 0; i < groups.size(); ++i) {
        const auto& [code, value] = groups[i];
        if (code == 0 && value == "SECTION")
            ++depth;
        if (code == 0 && value == "ENDSEC")
            --depth;
        EXPECT_TRUE(depth == 0 || depth == 1);
        const bool isSeed = i > 0 && groups[i - 1].value == "$HANDSEED";
        if ((code == 5 || code == 105) && !isSeed) {
            EXPECT_FALSE(handles.contains(value)) << value.toStdString();
            handles.insert(value);
        }
        if ((code >= 10 && code < 60) || (code >= 210 && code < 240)) {
            bool isNumber = false;
            const double number = value.toDouble(&isNumber);
            EXPECT_TRUE(isNumber && std::isfinite(number)) << code << ": " << value.toStdString();
        }
        if (code == 2 && i > 0 && groups[i - 1].value == "AcDbLayerTableRecord")
            layers.insert(value);
        if (!hasHandles && code == 2 && i > 0 && groups[i - 1].code == 0 &&
            groups[i - 1].value == "LAYER")
            layers.insert(value);
    }
    EXPECT_EQ(depth, 0);
    EXPECT_EQ(!handles.isEmpty(), hasHandles);
    for (const auto& [code, value] : groups) {
        if ((code == 330 || code == 340 || code == 350 || code == 390) && value != "0") {
            EXPECT_TRUE(handles.contains(value)) << code << ' ' << value.toStdString();
        }
        if (code == 8) {
            EXPECT_TRUE(layers.contains(value)) << value.toStdString();
        }
    }
    for (const QByteArray& layer : layers) {
        for (const char letter : layer)
            EXPECT_TRUE((letter >= 'A' && letter <= 'Z') || (letter >= '0' && letter <= '9') ||
                        letter == '_' || letter == '-');
    }
}

/// The mean difference of the channels of two pictures of one size, on white.
double meanDifference(const QImage& first, const QImage& second) {
    EXPECT_EQ(first.size(), second.size());
    QImage pictures[2] = {QImage(first.size(), QImage::Format_RGB32),
                          QImage(first.size(), QImage::Format_RGB32)};
    for (int i = 0; i < 2; ++i) {
        pictures[i].fill(Qt::white);
        QPainter(&pictures[i]).drawImage(0, 0, i == 0 ? first : second);
    }
    double sum = 0.0;
    for (int y = 0; y < first.height(); ++y) {
        for (int x = 0; x < first.width(); ++x) {
            const QRgb a = pictures[0].pixel(x, y);
            const QRgb b = pictures[1].pixel(x, y);
            sum += std::abs(qRed(a) - qRed(b)) + std::abs(qGreen(a) - qGreen(b)) +
                   std::abs(qBlue(a) - qBlue(b));
        }
    }
    return sum / (3.0 * first.width() * first.height());
}

} // namespace

TEST_F(Formats, DxfIsSoundInEveryVersionAndForm) {
    const QList<QPair<QString, QStringList>> versions{
        {"R12", {"arcs", "lines"}},
        {"R2000", {"arcs", "lines", "spline", "quadratic"}},
        {"R2010", {"arcs", "lines", "spline", "quadratic"}}};
    for (const QString& name : Samples) {
        const QStringList image{sample(name), "--method", "outlines", "--colors", "6"};
        const QStringList picture = image + QStringList{"--dpi", "254"};
        const QJsonArray expected = outlines(image);
        int lines = 0;
        int curves = 0;
        for (const QJsonValue outline : expected) {
            for (const QJsonValue segment : outline["segments"].toArray())
                ++(segment[0].toString() == "L" ? lines : curves);
        }
        for (const auto& [version, forms] : versions) {
            for (const QString& form : forms) {
                SCOPED_TRACE((name + ' ' + version + ' ' + form).toStdString());
                const QByteArray dxf = traced(picture + QStringList{"-f", "dxf", "--dxf-version",
                                                                    version, "--dxf-curves", form});
                checkStructure(dxf, version != "R12");
                const auto groups = groupsOf(dxf);
                const auto entities = section(groups, "ENTITIES");
                if (form == "quadratic") {
                    EXPECT_EQ(countEntities(entities, "LINE"), lines);
                    EXPECT_EQ(countEntities(entities, "SPLINE"), curves);
                } else {
                    const char* type = version == "R12"   ? "POLYLINE"
                                       : form == "spline" ? "SPLINE"
                                                          : "LWPOLYLINE";
                    EXPECT_EQ(countEntities(entities, type), expected.size());
                }
                const bool hasTrueColors =
                    std::any_of(groups.begin(), groups.end(),
                                [](const Group& group) { return group.code == 420; });
                EXPECT_EQ(hasTrueColors, version == "R2010");
                // 0.1 mm a pixel.
                const auto header = section(groups, "HEADER");
                const QPointF end = headerPoint(header, "$EXTMAX");
                EXPECT_NEAR(end.x(), QImage(sample(name)).width() / 10.0, 0.1);
                EXPECT_NEAR(end.y(), QImage(sample(name)).height() / 10.0, 0.1);
            }
        }
    }
}

TEST_F(Formats, CubicSplinesAreTheCurves) {
    const QStringList picture = flat(sample("logo.png"));
    const QByteArray dxf = traced(picture + QStringList{"-f", "dxf", "--dxf-curves", "spline"});
    QList<QPointF> points;
    QList<double> knots;
    const auto entities = section(groupsOf(dxf), "ENTITIES");
    const QJsonArray expected = outlines(picture);
    qsizetype outline = -1;
    const auto check = [&] {
        if (outline < 0)
            return;
        const QJsonArray segments = expected[outline]["segments"].toArray();
        ASSERT_EQ(points.size(), 3 * segments.size() + 1);
        ASSERT_EQ(knots.size(), points.size() + 4);
        EXPECT_EQ(points.first(), points.last());
        for (qsizetype i = 1; i < segments.size(); ++i)
            EXPECT_EQ(knots.count(static_cast<double>(i)), 3);
        for (qsizetype i = 0; i < segments.size(); ++i) {
            const QJsonArray segment = segments[i].toArray();
            const QPointF end(segment[segment.size() - 2].toDouble(),
                              segment[segment.size() - 1].toDouble());
            EXPECT_EQ(points[3 * i + 3], end);
            if (segment[0].toString() == "Q") {
                const QPointF control(segment[1].toDouble(), segment[2].toDouble());
                for (const double t : {0.25, 0.5, 0.75}) {
                    const double s = 1.0 - t;
                    const QPointF cubic =
                        points[3 * i] * (s * s * s) + points[3 * i + 1] * (3 * s * s * t) +
                        points[3 * i + 2] * (3 * s * t * t) + points[3 * i + 3] * (t * t * t);
                    const QPointF off = cubic - curvePoint(points[3 * i], control, end, t);
                    EXPECT_LT(std::hypot(off.x(), off.y()), 1e-10);
                }
            }
        }
    };
    for (qsizetype i = 0; i < entities.size(); ++i) {
        const auto& [code, value] = entities[i];
        if (code == 0) {
            check();
            ++outline;
            points.clear();
            knots.clear();
        }
        if (code == 40)
            knots.append(value.toDouble());
        if (code == 10)
            points.append({value.toDouble(), entities[i + 1].value.toDouble()});
        if (code == 70) {
            EXPECT_EQ(value, "8") << "planar, not closed";
        }
    }
    check();
    EXPECT_EQ(outline + 1, expected.size());
}

TEST_F(Formats, DxfSaysItsUnits) {
    const QStringList picture{sample("logo.png"), "--method", "outlines", "-f", "dxf"};
    const auto value = [&](const QStringList& size, const QByteArray& name) {
        const auto header = section(groupsOf(traced(picture + size)), "HEADER");
        for (qsizetype i = 0; i + 1 < header.size(); ++i) {
            if (header[i].value == name)
                return header[i + 1].value.toInt();
        }
        return -1;
    };
    EXPECT_EQ(value({}, "$INSUNITS"), 0);
    EXPECT_EQ(value({"--dpi", "96"}, "$INSUNITS"), 4);
    EXPECT_EQ(value({"--dpi", "96", "--units", "in"}, "$INSUNITS"), 1);
    EXPECT_EQ(value({"--dpi", "96", "--units", "in"}, "$MEASUREMENT"), 0);
    EXPECT_EQ(value({"--dpi", "96", "--units", "cm"}, "$INSUNITS"), 5);
    // 480 pixels are 5 inches.
    const auto header =
        section(groupsOf(traced(picture + QStringList{"--dpi", "96", "--units", "in"})), "HEADER");
    EXPECT_NEAR(headerPoint(header, "$EXTMAX").x(), 5.0, 0.01);
}

TEST_F(Formats, SvgHasTheSizeThatWasAskedFor) {
    const QStringList picture{sample("logo.png"), "-f", "svg"};
    const auto size = [&](const QStringList& options) {
        QXmlStreamReader xml(traced(picture + options));
        xml.readNextStartElement();
        EXPECT_EQ(xml.attributes().value("viewBox"), u"0 0 480 360");
        return xml.attributes().value("width").toString() + ' ' +
               xml.attributes().value("height").toString();
    };
    EXPECT_EQ(size({}), "480 360");
    EXPECT_EQ(size({"--width", "120mm"}), "120mm 90mm");
    EXPECT_EQ(size({"--height", "4.5in"}), "152.4mm 114.3mm");
    EXPECT_EQ(size({"--dpi", "96"}), "127mm 95.25mm");
    QImage image(sample("logo.png"));
    image.setDotsPerMeterX(4000);
    image.setDotsPerMeterY(4000);
    const QByteArray svg = traced({saveImage(image, "dots.png"), "-f", "svg", "--dpi", "auto"});
    EXPECT_TRUE(svg.contains("width=\"120mm\"")) << svg.left(200).toStdString();
    expectError(run({sample("logo.png"), "--dpi", "soon"}), 2, "--dpi takes");
}

TEST_F(Formats, SvgStylesAndPrecision) {
    const QStringList picture = flat(sample("logo.png")) + QStringList{"-f", "svg"};
    const QByteArray filled = traced(picture);
    EXPECT_TRUE(filled.contains("<title>logo</title>"));
    EXPECT_FALSE(filled.contains("stroke"));
    const QByteArray stroked = traced(picture + QStringList{"--outline"});
    EXPECT_EQ(stroked.count("fill=\"none\" stroke=\"#"), filled.count("fill=\"#"));
    const QByteArray seams = traced(picture + QStringList{"--close-seams"});
    EXPECT_TRUE(seams.contains("stroke-linejoin=\"round\""));
    const QByteArray rough = traced(picture + QStringList{"--precision", "0"});
    EXPECT_LT(rough.size(), filled.size());
    QXmlStreamReader xml(rough);
    while (!xml.atEnd()) {
        if (xml.readNext() == QXmlStreamReader::StartElement && xml.name() == u"path") {
            EXPECT_FALSE(xml.attributes().value("d").contains('.'));
        }
    }
    EXPECT_FALSE(xml.hasError());
}

TEST_F(Formats, SvgGroupsLayersOnlyWhenTheOrderOfPaintingStays) {
    // Two colours side by side can be grouped; a square in a square cannot when a third colour
    // comes between them in the list.
    QImage apart(60, 20, QImage::Format_RGB32);
    apart.fill(Qt::white);
    QPainter painter(&apart);
    painter.fillRect(5, 5, 10, 10, Qt::red);
    painter.fillRect(25, 5, 10, 10, Qt::blue);
    painter.fillRect(45, 5, 10, 10, Qt::red);
    painter.end();
    const QStringList options{
        "--method", "outlines", "--blur", "0", "--palette", "#ffffff,#ff0000,#0000ff", "-f", "svg"};
    const QByteArray grouped = traced(QStringList{saveImage(apart, "apart.png")} + options);
    EXPECT_EQ(grouped.count("<g id=\"color-"), 3) << grouped.toStdString();
    EXPECT_TRUE(grouped.contains("<g id=\"color-1-ff0000\" fill=\"#ff0000\">"));
    QImage nested(60, 60, QImage::Format_RGB32);
    nested.fill(Qt::white);
    painter.begin(&nested);
    painter.fillRect(5, 5, 50, 50, Qt::red);
    painter.fillRect(15, 15, 30, 30, Qt::white);
    painter.fillRect(25, 25, 10, 10, Qt::red);
    painter.end();
    const QByteArray flat = traced(QStringList{saveImage(nested, "nested.png")} + options);
    EXPECT_EQ(flat.count("<g "), 0);
    EXPECT_EQ(flat.count("<path fill="), 4);
}

TEST_F(Formats, WorldFilesPutDxfAndGeoJsonIntoTheirCoordinates) {
    ASSERT_TRUE(QFile::copy(sample("logo.png"), path("plan.png")));
    writeFile(path("plan.pgw"), "2\n0\n0\n-2\n500001\n5800719\n");
    const QStringList picture = flat(path("plan.png"));
    // The image is 480 x 360 pixels of 2 metres, its lower left corner at 500000, 5800000.
    const auto header = section(groupsOf(traced(picture + QStringList{"-f", "dxf"})), "HEADER");
    const QPointF least = headerPoint(header, "$EXTMIN");
    const QPointF most = headerPoint(header, "$EXTMAX");
    EXPECT_TRUE(least.x() >= 500000.0 && least.y() >= 5800000.0) << least.x() << ' ' << least.y();
    EXPECT_TRUE(most.x() <= 500960.0 && most.y() <= 5800720.0) << most.x() << ' ' << most.y();
    EXPECT_GT(most.x() - least.x(), 480.0);
    const QByteArray map = traced(picture + QStringList{"-f", "geojson", "--crs", "EPSG:25832"});
    EXPECT_TRUE(map.contains("urn:ogc:def:crs:EPSG::25832"));
    EXPECT_EQ(traced(picture + QStringList{"-f", "geojson", "--crs", "EPSG:25832", "--world",
                                           "2,0,0,-2,500001,5800719"}),
              map);
    const QByteArray pixels = traced(flat(sample("logo.png")) + QStringList{"-f", "geojson"});
    EXPECT_EQ(traced(picture + QStringList{"-f", "geojson", "--world", "none"}), pixels);
    expectError(run({sample("logo.png"), "-f", "geojson", "-o", path("x"), "--crs", "EPSG:1"}), 1,
                "logo.png: has no world file");
    expectError(run(picture + QStringList{"--world", "none"}), 2, "is for dxf and geojson");
    writeFile(path("plan.pgw"), "2\n0\n");
    expectError(run(picture + QStringList{"-f", "dxf"}), 1, "plan.pgw: is no world file");
}

TEST_F(Formats, GeoJsonIsMadeOfClosedRings) {
    const QJsonObject json =
        QJsonDocument::fromJson(
            traced(flat(sample("logo.png")) + QStringList{"-f", "geojson", "--dpi", "254"}))
            .object();
    EXPECT_EQ(json["type"].toString(), "FeatureCollection");
    EXPECT_TRUE(json["crs"].isNull());
    EXPECT_EQ(json["units"].toString(), "mm");
    const QJsonArray features = json["features"].toArray();
    // Outlines that run out and back along the same line have no area: they are no polygons.
    EXPECT_LE(features.size(), outlines(flat(sample("logo.png"))).size());
    EXPECT_GT(features.size(), 30);
    for (const QJsonValue feature : features) {
        EXPECT_TRUE(feature["properties"]["color"].toString().startsWith('#'));
        const QJsonArray ring = feature["geometry"]["coordinates"][0].toArray();
        ASSERT_GE(ring.size(), 4);
        EXPECT_EQ(ring.first(), ring.last());
        double area = 0.0;
        for (qsizetype i = 0; i + 1 < ring.size(); ++i) {
            EXPECT_LE(ring[i][0].toDouble(), 48.0);
            area += ring[i][0].toDouble() * ring[i + 1][1].toDouble() -
                    ring[i + 1][0].toDouble() * ring[i][1].toDouble();
        }
        EXPECT_GT(area, 0.0) << "counter-clockwise";
    }
}

TEST_F(Formats, PngHasItsScaleAndOverlay) {
    const QStringList picture = flat(sample("logo.png")) + QStringList{"-f", "png"};
    const QImage plain = QImage::fromData(traced(picture + QStringList{"--dpi", "254"}));
    EXPECT_EQ(plain.size(), QSize(480, 360));
    EXPECT_EQ(plain.dotsPerMeterX(), 10000);
    EXPECT_FALSE(traced(picture).contains("pHYs")) << "a resolution that nobody has stated";
    EXPECT_LT(meanDifference(plain, QImage(sample("logo.png"))), 6.0);
    EXPECT_EQ(QImage::fromData(traced(picture + QStringList{"--scale", "2.5"})).size(),
              QSize(1200, 900));
    const QImage overlay = QImage::fromData(traced(picture + QStringList{"--overlay"}));
    int red = 0;
    int blue = 0;
    for (int y = 0; y < overlay.height(); ++y) {
        for (int x = 0; x < overlay.width(); ++x) {
            red += overlay.pixel(x, y) == qRgb(200, 0, 60) ? 1 : 0;
            blue += overlay.pixel(x, y) == qRgb(0, 70, 200) ? 1 : 0;
        }
    }
    EXPECT_GT(red, 100);
    EXPECT_GT(blue, 100);
}

TEST_F(Formats, OtherRenderersShowTheSamePicture) {
    const QString rsvg = QStandardPaths::findExecutable("rsvg-convert");
    const QString poppler = QStandardPaths::findExecutable("pdftoppm");
    if (rsvg.isEmpty() || poppler.isEmpty())
        GTEST_SKIP() << "needs rsvg-convert and pdftoppm";
    for (const QString& name : Samples) {
        SCOPED_TRACE(name.toStdString());
        const QStringList picture = flat(sample(name));
        QImage own = QImage::fromData(traced(picture + QStringList{"-f", "png"}));
        ASSERT_EQ(run(picture + QStringList{"-o", path("a.svg")}).status, 0);
        ASSERT_EQ(runProgram(rsvg, {path("a.svg"), "-o", path("svg.png")}).status, 0);
        EXPECT_LT(meanDifference(own, QImage(path("svg.png"))), 1.5);
        ASSERT_EQ(run(picture + QStringList{"-o", path("a.pdf"), "--dpi", "96"}).status, 0);
        ASSERT_EQ(
            runProgram(poppler, {"-r", "96", "-png", "-singlefile", path("a.pdf"), path("pdf")})
                .status,
            0);
        const QImage pdf(path("pdf.png"));
        // A page of a part of a point is a pixel larger.
        ASSERT_LE(std::abs(pdf.width() - own.width()), 1);
        EXPECT_LT(meanDifference(own.copy(0, 0, own.width() - 1, own.height() - 1),
                                 pdf.copy(0, 0, own.width() - 1, own.height() - 1)),
                  3.0);
    }
}

// Each line of the list is a hash and the arguments that give the output. After a change that is
// meant, OVTRACE_UPDATE_GOLDEN=1 makes the test write the new hashes.
TEST_F(Formats, GoldenOutputsStayAsTheyAre) {
    const QString list = OVTRACE_GOLDEN "/outputs.txt";
    const bool updating = qEnvironmentVariableIsSet("OVTRACE_UPDATE_GOLDEN");
    QByteArray updated;
    int checked = 0;
    for (const QByteArray& line : contents(list).trimmed().split('\n')) {
        const QList<QByteArray> words = line.trimmed().split(' ');
        ASSERT_GE(words.size(), 3) << line.toStdString();
        QStringList arguments{sample(words[1])};
        for (qsizetype i = 2; i < words.size(); ++i)
            arguments.append(words[i]);
        QByteArray output = traced(arguments);
        // How a picture is packed is up to the library; what it shows is not.
        if (output.startsWith("\x89PNG")) {
            const QImage image = QImage::fromData(output).convertToFormat(QImage::Format_ARGB32);
            output =
                QByteArray(reinterpret_cast<const char*>(image.constBits()), image.sizeInBytes());
        }
        const QByteArray hash =
            QCryptographicHash::hash(output, QCryptographicHash::Sha256).toHex();
        updated += hash + line.trimmed().mid(words[0].size()) + '\n';
        if (!updating) {
            EXPECT_EQ(hash, words[0]) << line.toStdString();
        }
        ++checked;
    }
    EXPECT_GE(checked, 30);
    if (updating)
        writeFile(list, updated);
}
