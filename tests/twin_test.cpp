#include "reference/compare.h"
#include "reference/tracetwin.h"
#include "support/conversions.h"
#include "support/probe.h"
#include "support/randominput.h"

#include <blur.h>
#include <fitting.h>
#include <imageload.h>
#include <internodes.h>
#include <kernels/vectorlevel.h>
#include <layering.h>
#include <palette.h>
#include <pathscan.h>
#include <preprocess.h>
#include <quantization.h>
#include <random.h>

#include <QDir>
#include <QImageReader>

#include <gtest/gtest.h>

#include <array>
#include <cstdlib>

// The engine against the plain reference: random input and real images, no difference allowed.

namespace {

// How much is compared. Sanitizers take ten times as long and look for something else.
#ifdef OVTRACE_SANITIZED
constexpr int RandomTraces = 1000;
constexpr qint64 LargestImage = 40000; ///< pixels
#else
constexpr int RandomTraces = 6000;
constexpr qint64 LargestImage = 300000;
#endif

using Options = QList<QPair<QString, double>>;

/// A tracer and its twin, given the same of everything.
class Pair {
public:
    void setOptions(const Options& options) {
        for (const auto& [key, value] : options) {
            engine.setOption(key, value);
            twin.setOption(key, value);
        }
    }
    void setPalette(const QList<QList<char>>& palette) {
        engine.setPalette(palette);
        twin.palette = palette;
    }

    /// Traces the image with both; each starts its random draws from `seed`.
    testing::AssertionResult traceAlike(const QImage& image, unsigned seed) {
        const QImage before = image.copy();
        OvTraceBitmap::seedRandom(seed);
        const QList<OvPolyline> traced = engine.trace(image);
        TraceTwin::seedRandom(seed);
        const QList<OvPolyline> expected = twin.trace(image);
        if (const QString where = difference(traced, expected); !where.isEmpty())
            return testing::AssertionFailure() << where.toStdString();
        outlines += traced.size();
        if (engine.getPalette() != twin.palette)
            return testing::AssertionFailure() << "palettes differ";
        if (engine.getPolylineLayers() != twin.polylineLayers)
            return testing::AssertionFailure() << "layers differ";
        if (TraceBitmapProbe::options(engine).keys() != twin.options.keys())
            return testing::AssertionFailure() << "option keys differ";
        if (toLists(TraceBitmapProbe::indexedImage(engine)->indices) != twin.indexedImage.array)
            return testing::AssertionFailure() << "indices differ";
        if (image != before)
            return testing::AssertionFailure() << "the caller's image has changed";
        return testing::AssertionSuccess();
    }

    qsizetype outlines = 0; ///< found so far

private:
    OvTraceBitmap engine;
    TraceTwin twin;
};

QString describe(const QImage& image, const Options& options) {
    QString text = QString("%1 x %2").arg(image.width()).arg(image.height());
    for (const auto& [key, value] : options)
        text += QString(", %1 = %2").arg(key).arg(value, 0, 'g', 17);
    return text;
}

} // namespace

/// Every form of the pixel kernels, forced.
class EveryLevel : public testing::TestWithParam<ovtrace::VectorLevel> {
protected:
    void SetUp() override {
        ovtrace::forceVectorLevel(GetParam());
        ASSERT_EQ(ovtrace::vectorLevel(), GetParam());
    }
    void TearDown() override {
        ovtrace::forceVectorLevel(ovtrace::bestVectorLevel());
    }
};

std::string levelName(const testing::TestParamInfo<ovtrace::VectorLevel>& info) {
    constexpr std::array Names{"Scalar", "Ssse3", "Avx2"};
    return Names[static_cast<std::size_t>(info.param)];
}
INSTANTIATE_TEST_SUITE_P(Twin, EveryLevel,
                         testing::ValuesIn(ovtrace::vectorLevels().begin(),
                                           ovtrace::vectorLevels().end()),
                         levelName);

TEST_P(EveryLevel, TracesRandomImagesAlike) {
    RandomInput input(20260);
    qsizetype outlines = 0;
    for (int round = 0; round < RandomTraces; ++round) {
        Pair pair;
        const Options options = input.options();
        pair.setOptions(options);
        if (input.oneIn(3))
            pair.setPalette(input.palette(input.oneIn(10) ? 300 : 20));
        // Two traces on one object: the second starts from the palette of the first.
        for (int i = 0; i < 2; ++i) {
            const QImage image = input.image(input.oneIn(4) ? 64 : 24);
            ASSERT_TRUE(pair.traceAlike(image, static_cast<unsigned>(round + i)))
                << "round " << round << ", trace " << i << ": "
                << describe(image, options).toStdString();
        }
        outlines += pair.outlines;
    }
    EXPECT_GT(outlines, 3 * RandomTraces) << "too few outlines to prove anything";
}

namespace {

/// A random image as loaded by the twin and, with all channels or no more than it needs, returned.
ovtrace::PixelImage loadBoth(TraceTwin& twin, RandomInput& input, int largest) {
    const QImage image = input.image(largest);
    twin.loadImageData(image);
    if (input.oneIn(4))
        return toPixels(image.width(), image.height(), twin.imageData.data);
    return ovtrace::loadPixels(image);
}

} // namespace

TEST(Twin, MakesTheSamePalettes) {
    RandomInput input(20261);
    TraceTwin twin;
    for (int round = 0; round < 300; ++round) {
        const ovtrace::PixelImage image = loadBoth(twin, input, 40);
        const int colors = input.number(-1, 300);
        EXPECT_EQ(ovtrace::toColorLists(ovtrace::samplepalette(image, colors)),
                  twin.samplepalette(colors));
        ovtrace::seedRandom(static_cast<unsigned>(round));
        const auto generated = ovtrace::toColorLists(ovtrace::generatepalette(colors));
        // After that, because on Windows both draw from the one sequence of the C runtime.
        TraceTwin::seedRandom(static_cast<unsigned>(round));
        EXPECT_EQ(generated, twin.generatepalette(colors));
    }
}

TEST_P(EveryLevel, BlursAlike) {
    RandomInput input(20262);
    TraceTwin twin;
    for (int round = 0; round < 1500; ++round) {
        ovtrace::PixelImage image = loadBoth(twin, input, 48);
        const auto radius = static_cast<float>(input.number(0, 24)) / 4.0F;
        const auto delta = static_cast<float>(input.oneIn(2) ? input.number(-60, 60) : 1024);
        ovtrace::blur(image, radius, delta);
        twin.blur(radius, delta);
        ASSERT_EQ(toBytes(image), twin.imageData.data)
            << image.width << " x " << image.height << ", radius " << radius << ", delta " << delta;
    }
}

TEST_P(EveryLevel, QuantizesAlike) {
    RandomInput input(20263);
    for (int round = 0; round < 800; ++round) {
        TraceTwin twin;
        ovtrace::PixelImage image = loadBoth(twin, input, 32);
        do
            twin.palette = input.palette(input.oneIn(5) ? 400 : 30);
        while (twin.palette.isEmpty());
        const int cycles = input.number(0, 7);
        const double ratio = input.number(0, 12) / 100.0;
        twin.setOption("colorquantcycles", cycles);
        twin.setOption("mincolorratio", ratio);
        twin.setOption("blurradius", 0.0);
        ovtrace::Palette palette = ovtrace::toPalette(twin.palette);
        ovtrace::seedRandom(static_cast<unsigned>(round));
        const auto quantized =
            ovtrace::colorquantization(std::move(image), palette, {cycles, ratio});
        TraceTwin::seedRandom(static_cast<unsigned>(round));
        twin.colorquantization();
        ASSERT_EQ(toLists(quantized.indices), twin.indexedImage.array) << "round " << round;
        ASSERT_EQ(ovtrace::toColorLists(palette), twin.palette) << "round " << round;
    }
}

TEST_P(EveryLevel, QuantizesLargePalettesAlike) {
    RandomInput input(20265);
    for (int round = 0; round < 12; ++round) {
        TraceTwin twin;
        ovtrace::PixelImage image = loadBoth(twin, input, 12);
        // Some colours more than once, and more than a table of candidates takes.
        while (twin.palette.size() < 8500 + 100 * round) {
            twin.palette.append(input.palette(300));
            if (!twin.palette.isEmpty() && input.oneIn(2))
                twin.palette.append(twin.palette.constFirst());
        }
        twin.setOption("colorquantcycles", 3);
        twin.setOption("mincolorratio", 0.02 * (round % 2));
        twin.setOption("blurradius", 0.0);
        ovtrace::Palette palette = ovtrace::toPalette(twin.palette);
        ovtrace::seedRandom(static_cast<unsigned>(round));
        const auto quantized =
            ovtrace::colorquantization(std::move(image), palette, {3, 0.02 * (round % 2)});
        TraceTwin::seedRandom(static_cast<unsigned>(round));
        twin.colorquantization();
        ASSERT_EQ(toLists(quantized.indices), twin.indexedImage.array) << "round " << round;
        ASSERT_EQ(ovtrace::toColorLists(palette), twin.palette) << "round " << round;
    }
}

TEST(Twin, LayersScansAndFitsAlike) {
    RandomInput input(20264);
    for (int round = 0; round < 1500; ++round) {
        const int colors = input.oneIn(10) ? input.number(250, 270) : input.number(1, 6);
        const int width = input.number(1, 24);
        QList<QList<int>> rows(input.number(1, 24), QList<int>(width));
        for (auto& row : rows) {
            for (int& cell : row)
                cell = input.oneIn(3) ? input.number(0, colors - 1) : 0;
        }
        const ovtrace::QuantizedImage quantized = quantizedImage(rows, colors);
        TraceTwin twin;
        twin.indexedImage = IndexedImage(toLists(quantized.indices), QList<QList<char>>(colors));
        const ovtrace::LayerSet layers(quantized);
        const QList<TraceTwin::Grid> grids = twin.layering();
        ASSERT_EQ(layers.count(), grids.size());
        for (int k = 0; k < colors; ++k) {
            for (int r = 0; r < layers.rows(); ++r) {
                for (int c = 0; c < layers.columns(); ++c)
                    ASSERT_EQ(layers.nodeType(k, r, c), grids[k][r][c]);
            }
        }

        const auto pathomit = static_cast<float>(input.number(-1, 12));
        const auto ltres = static_cast<float>(input.number(-1, 20)) / 10.0F;
        const auto qtres = static_cast<float>(input.number(-1, 20)) / 10.0F;
        const auto expected = twin.batchpathscan(grids, pathomit);
        QList<QList<TraceTwin::Path>> found(colors);
        ovtrace::PathScan scan(layers, pathomit);
        ovtrace::Path path;
        for (int k = scan.next(path); k >= 0; k = scan.next(path)) {
            found[k].append(toLists(path));
            ovtrace::InternodePath nodes;
            ovtrace::internodes(path, nodes);
            const TraceTwin::NodePath twinNodes = twin.internodes({toLists(path)}).first();
            ASSERT_EQ(toLists(nodes), twinNodes);
            ovtrace::TracedPath traced;
            ovtrace::tracepath(nodes, ltres, qtres, traced);
            ASSERT_TRUE(sameRecords(toLists(traced), twin.tracepath(twinNodes, ltres, qtres)));
        }
        ASSERT_EQ(found, expected) << "round " << round;
    }
}

TEST_P(EveryLevel, TracesRealImagesAlike) {
    const QString folder = qEnvironmentVariable("OVTRACE_CORPUS", OVTRACE_SAMPLES);
    const QList<Options> optionSets{
        {},
        {{"monochrome", 0.0}},
        {{"usebrightness", 1.0}, {"brightnessthreshold", 127.0}, {"blurradius", 0.0}},
        {{"monochrome", 0.0}, {"numberofcolors", 7.0}, {"colorsampling", 0.0}, {"pathomit", 1.0}},
        {{"monochrome", 0.0},
         {"numberofcolors", 32.0},
         {"colorquantcycles", 5.0},
         {"blurradius", 3.0},
         {"blurdelta", 60.0},
         {"ltres", 0.3},
         {"qtres", 2.5}},
    };
    int images = 0;
    for (const QFileInfo& group : QDir(folder).entryInfoList(
             QDir::Dirs | QDir::Files | QDir::NoDotAndDotDot | QDir::Readable, QDir::Name)) {
        const QFileInfoList files = group.isDir()
                                        ? QDir(group.filePath()).entryInfoList(QDir::Files)
                                        : QFileInfoList{group};
        for (const QFileInfo& file : files) {
            if (file.suffix() == "svg" || !QImageReader(file.filePath()).canRead())
                continue;
            const QImage image(file.filePath());
            if (qint64(image.width()) * image.height() >= LargestImage)
                continue;
            ++images;
            for (const Options& options : optionSets) {
                Pair pair;
                pair.setOptions(options);
                EXPECT_TRUE(pair.traceAlike(image, 1)) << file.filePath().toStdString() << ": "
                                                       << describe(image, options).toStdString();
            }
        }
    }
    std::cout << images << " real images compared\n";
    EXPECT_GT(images, 0) << "no images in " << folder.toStdString();
}
