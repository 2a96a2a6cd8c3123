#include "reference/compare.h"
#include "support/conversions.h"
#include "support/probe.h"

#include <indexedimage.h>
#include <options.h>
#include <tracebitmap.h>

#include <QImage>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <functional>
#include <limits>
#include <type_traits>

using namespace ovtrace;

namespace {

const QMap<QString, double> Defaults{{"monochrome", 1.0},
                                     {"numberofcolors", 16.0},
                                     {"mincolorratio", 0.02},
                                     {"colorquantcycles", 3.0},
                                     {"colorsampling", 1.0},
                                     {"blurradius", 1.0},
                                     {"blurdelta", 2000.0},
                                     {"pathomit", 8.0},
                                     {"ltres", 1.0},
                                     {"qtres", 1.0},
                                     {"alphathreshold", 200.0},
                                     {"brightnessthreshold", 200.0}};

QImage square(QRgb background, QRgb color, int size = 24) {
    QImage image(size, size, QImage::Format_ARGB32);
    image.fill(background);
    for (int y = size / 4; y < 3 * size / 4; ++y) {
        for (int x = size / 4; x < 3 * size / 4; ++x)
            image.setPixel(x, y, color);
    }
    return image;
}

OvTraceBitmap colorTracer() {
    OvTraceBitmap tracer;
    tracer.setOption("monochrome", 0.0);
    return tracer;
}

} // namespace

TEST(TraceBitmap, StartsWithTheTwelveDefaultOptions) {
    const OvTraceBitmap tracer;
    EXPECT_EQ(TraceBitmapProbe::options(tracer), Defaults);
    EXPECT_FALSE(TraceBitmapProbe::options(tracer).contains("usealpha"));
    EXPECT_FALSE(TraceBitmapProbe::options(tracer).contains("usebrightness"));
}

TEST(TraceBitmap, CopiesCarryOptions) {
    OvTraceBitmap tracer;
    tracer.setOption("numberofcolors", 4);
    const OvTraceBitmap copy(tracer);
    EXPECT_EQ(TraceBitmapProbe::options(copy).value("numberofcolors"), 4.0);
    OvTraceBitmap assigned;
    assigned = tracer;
    EXPECT_EQ(TraceBitmapProbe::options(assigned).value("numberofcolors"), 4.0);
    tracer.setOption("numberofcolors", 5);
    EXPECT_EQ(TraceBitmapProbe::options(copy).value("numberofcolors"), 4.0);
}

TEST(TraceBitmap, UnknownOptionIsAddedAndChangesNothingElse) {
    OvTraceBitmap tracer;
    tracer.setOption("nosuchoption", 7.0);
    QMap<QString, double> expected = Defaults;
    expected["nosuchoption"] = 7.0;
    EXPECT_EQ(TraceBitmapProbe::options(tracer), expected);
}

TEST(TraceBitmap, ReadingAnAbsentOptionInsertsZero) {
    OvTraceBitmap tracer;
    tracer.trace(square(qRgb(255, 255, 255), qRgb(0, 0, 0)));
    const OvTraceBitmap copy(tracer);
    EXPECT_EQ(TraceBitmapProbe::options(copy).value("usealpha", -1.0), 0.0);
    EXPECT_EQ(TraceBitmapProbe::options(copy).value("usebrightness", -1.0), 0.0);
}

TEST(TraceBitmap, HasOneVirtualOperationAlone) {
    EXPECT_TRUE(std::has_virtual_destructor_v<OvTraceBitmap>);
    EXPECT_FALSE(std::is_abstract_v<OvTraceBitmap>);
}

TEST(IndexedImage, TakesItsSizeFromTheFirstRow) {
    const QList<QList<int>> array{QList<int>(7), QList<int>(3), {}, QList<int>(9), QList<int>(1)};
    const IndexedImage image(array, {});
    EXPECT_EQ(image.width, 5);
    EXPECT_EQ(image.height, 3);
    EXPECT_TRUE(image.tracedata.isEmpty());
}

TEST(IndexedImage, StartsEmpty) {
    const IndexedImage image;
    EXPECT_EQ(image.width, 0);
    EXPECT_EQ(image.height, 0);
    EXPECT_TRUE(image.array.isEmpty() && image.palette.isEmpty() && image.tracedata.isEmpty());
}

TEST(ImageData, SharesTheListItIsGiven) {
    QList<char> bytes{1, 2, 3, 4};
    const ImageData image(1, 1, bytes);
    EXPECT_EQ(image.data.constData(), bytes.constData());
    const ImageData empty;
    EXPECT_EQ(empty.width, 0);
    EXPECT_EQ(empty.height, 0);
    EXPECT_TRUE(empty.data.isEmpty());
}

TEST(Trace, NothingToTraceLeavesTheMembersAsTheyWere) {
    OvTraceBitmap tracer = colorTracer();
    ASSERT_FALSE(tracer.trace(square(qRgb(255, 255, 255), qRgb(0, 0, 0))).isEmpty());
    const auto options = TraceBitmapProbe::options(tracer);
    const auto palette = tracer.getPalette();
    const auto* indexed = TraceBitmapProbe::indexedImage(tracer);

    EXPECT_TRUE(tracer.trace(QImage()).isEmpty());
    EXPECT_TRUE(tracer.trace(QImage(0, 10, QImage::Format_RGB32)).isEmpty());
    EXPECT_TRUE(tracer.trace(QString("no/such/file.png")).isEmpty());

    EXPECT_EQ(TraceBitmapProbe::options(tracer), options);
    EXPECT_EQ(tracer.getPalette(), palette);
    EXPECT_EQ(TraceBitmapProbe::indexedImage(tracer), indexed);
    EXPECT_TRUE(tracer.getPolylineLayers().isEmpty()) << "as the list that was returned";
}

TEST(Trace, ReadsAFileAsItReadsTheImage) {
    const QTemporaryDir folder;
    const QString fileName = folder.filePath("square.png");
    const QImage image = square(qRgb(250, 250, 0), qRgb(0, 0, 99));
    ASSERT_TRUE(image.save(fileName));
    OvTraceBitmap fromFile = colorTracer();
    OvTraceBitmap fromImage = colorTracer();
    OvTraceBitmap::seedRandom(1);
    const auto expected = fromImage.trace(image);
    OvTraceBitmap::seedRandom(1);
    EXPECT_EQ(difference(fromFile.trace(fileName), expected), QString());
    EXPECT_FALSE(expected.isEmpty());
}

TEST(Trace, LeavesTheImageOfTheCallerAlone) {
    OvTraceBitmap tracer;
    const QImage image = square(qRgb(255, 255, 255), qRgb(0, 0, 0));
    const QImage before = image.copy();
    tracer.trace(image);
    EXPECT_EQ(image, before);
}

TEST(Trace, FloorsPathomitButNotTheTolerances) {
    // A square of 2 x 2 pixels has a boundary of exactly eight corners.
    QImage image(6, 6, QImage::Format_RGB32);
    image.fill(Qt::white);
    for (const QPoint& p : {QPoint(2, 2), QPoint(3, 2), QPoint(2, 3), QPoint(3, 3)})
        image.setPixel(p, qRgb(0, 0, 0));
    const auto outlines = [&](double pathomit) {
        OvTraceBitmap tracer = colorTracer();
        tracer.setOption("blurradius", 0.0);
        tracer.setOption("numberofcolors", 2.0);
        tracer.setOption("pathomit", pathomit);
        return tracer.trace(image).size();
    };
    EXPECT_EQ(outlines(8.0), 2);
    EXPECT_EQ(outlines(8.9), 2) << "8.9 counts as 8";
    EXPECT_EQ(outlines(9.0), 1);
    EXPECT_EQ(outlines(-0.5), 2) << "-0.5 counts as -1 and keeps everything";
    EXPECT_EQ(outlines(std::numeric_limits<double>::quiet_NaN()), 2);
}

TEST(Trace, NarrowsTheTolerancesToFloat) {
    const QImage image = square(qRgb(255, 255, 255), qRgb(0, 0, 0), 40);
    const auto traced = [&](double tolerance) {
        OvTraceBitmap tracer = colorTracer();
        tracer.setOption("ltres", tolerance);
        tracer.setOption("qtres", tolerance);
        OvTraceBitmap::seedRandom(1);
        return tracer.trace(image);
    };
    EXPECT_EQ(difference(traced(0.1), traced(static_cast<double>(0.1F))), QString());
    EXPECT_NE(difference(traced(0.1), traced(1.9)), QString()) << "the tolerance decides here";
    EXPECT_NE(difference(traced(0.1), traced(0.0)), QString()) << "0.1 is not floored";
}

TEST(Trace, ASecondTraceStartsFromThePaletteOfTheFirst) {
    const QImage first = square(qRgb(255, 0, 0), qRgb(0, 255, 0));
    const QImage second = square(qRgb(0, 0, 255), qRgb(255, 255, 0));
    const auto traceAfterFirst = [&](const std::function<void(OvTraceBitmap&)>& between) {
        OvTraceBitmap tracer = colorTracer();
        tracer.setOption("numberofcolors", 2.0);
        tracer.setOption("colorquantcycles", 1.0);
        tracer.trace(first);
        between(tracer);
        tracer.trace(second);
        return tracer.getPalette();
    };
    OvTraceBitmap fresh = colorTracer();
    fresh.setOption("numberofcolors", 2.0);
    fresh.setOption("colorquantcycles", 1.0);
    fresh.trace(first);
    const auto firstPalette = fresh.getPalette();
    OvTraceBitmap other = colorTracer();
    other.setOption("numberofcolors", 2.0);
    other.setOption("colorquantcycles", 1.0);
    const auto secondOutlines = other.trace(second);

    EXPECT_EQ(traceAfterFirst([](OvTraceBitmap&) {}), firstPalette);
    EXPECT_EQ(traceAfterFirst([](OvTraceBitmap& tracer) { tracer.setPalette({}); }),
              other.getPalette());
    EXPECT_NE(other.getPalette(), firstPalette);
    // The outlines are those of the second image alone.
    EXPECT_EQ(secondOutlines.size(), 2);
    EXPECT_EQ(other.getPolylineLayers().size(), 2);
}

TEST(Trace, DefaultOptionsMakeOneBlackRectangle) {
    OvTraceBitmap tracer;
    const auto outlines = tracer.trace(square(qRgb(255, 255, 255), qRgb(9, 200, 9)));
    EXPECT_EQ(outlines.size(), 1);
}

TEST(Trace, AnEmptyPaletteGivesNothing) {
    OvTraceBitmap tracer = colorTracer();
    tracer.setOption("numberofcolors", 0.0);
    EXPECT_TRUE(tracer.trace(square(qRgb(255, 255, 255), qRgb(0, 0, 0))).isEmpty());
    EXPECT_TRUE(tracer.getPalette().isEmpty());
    EXPECT_TRUE(tracer.getPolylineLayers().isEmpty());
}

TEST(Trace, PaletteEntriesOfTheWrongLengthAreTolerated) {
    OvTraceBitmap tracer = colorTracer();
    tracer.setOption("colorquantcycles", 3.0);
    tracer.setPalette({{}, {1, 2}, {-128, -128, -128, 127, 55}, {127, 127, 127, 127}});
    const auto outlines = tracer.trace(square(qRgb(255, 255, 255), qRgb(0, 0, 0)));
    EXPECT_FALSE(outlines.isEmpty());
    EXPECT_EQ(tracer.getPalette().size(), 4);
}

TEST(Trace, LayersSayWhichColorEachOutlineHas) {
    OvTraceBitmap tracer = colorTracer();
    tracer.setOption("blurradius", 0.0);
    const QList<char> white{127, 127, 127, 127};
    const QList<char> red{127, -128, -128, 127};
    tracer.setPalette({red, white});
    const auto outlines = tracer.trace(square(qRgb(255, 255, 255), qRgb(255, 0, 0)));
    ASSERT_EQ(outlines.size(), 2);
    EXPECT_EQ(tracer.getPolylineLayers(), QList<int>({1, 0})) << "the outer region comes first";
    EXPECT_EQ(tracer.getPalette(), QList<QList<char>>({red, white}));
}

TEST(Trace, SeedingRepeatsATrace) {
    QImage image(40, 40, QImage::Format_RGB32);
    for (int y = 0; y < 40; ++y) {
        for (int x = 0; x < 40; ++x)
            image.setPixel(x, y, qRgb(x * 6, y * 6, 128));
    }
    const auto palette = [&](unsigned seed) {
        OvTraceBitmap tracer = colorTracer();
        tracer.setOption("mincolorratio", 0.2);
        OvTraceBitmap::seedRandom(seed);
        tracer.trace(image);
        return tracer.getPalette();
    };
    EXPECT_EQ(palette(7), palette(7));
    EXPECT_NE(palette(7), palette(8));
}

TEST(Trace, EveryOutlineCoversItsStartAndIsClosed) {
    OvTraceBitmap tracer = colorTracer();
    const auto outlines = tracer.trace(square(qRgb(255, 255, 255), qRgb(0, 0, 0), 60));
    ASSERT_FALSE(outlines.isEmpty());
    for (const OvPolyline& outline : outlines)
        EXPECT_EQ(outline.getStartPoint(), outline.getEndPoint());
}
