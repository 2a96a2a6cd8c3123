#include "tracebitmap.h"

#include "blur.h"
#include "fitting.h"
#include "internodes.h"
#include "layering.h"
#include "options.h"
#include "palette.h"
#include "pathscan.h"
#include "polylines.h"
#include "preprocess.h"
#include "quantization.h"
#include "random.h"

#include <color.h>
#include <imageload.h>
#include <numbers.h>
#include <stageprogress.h>

#include <QImage>

#include <new>

using namespace ovtrace;

namespace {

// Where the stages begin, in fractions of the time that a photograph takes.
constexpr double Loading = 0.0;
constexpr double Sampling = 0.05;
constexpr double Blurring = 0.1;
constexpr double Quantizing = 0.25;
constexpr double Scanning = 0.5;

/// What the outlines of an image cost for each of its pixels, at most as a rule.
constexpr std::int64_t OutlineWork = 4;

} // namespace

OvTraceBitmap::OvTraceBitmap() : options(defaultOptions()) {
}

OvTraceBitmap::OvTraceBitmap(const OvTraceBitmap& other) = default;
OvTraceBitmap& OvTraceBitmap::operator=(const OvTraceBitmap& other) = default;
OvTraceBitmap::~OvTraceBitmap() = default;

void OvTraceBitmap::setOption(const QString& key, double value) {
    options[key] = value;
}

double OvTraceBitmap::getOption(const QString& key) const {
    return options.value(key);
}

QMap<QString, double> OvTraceBitmap::getOptions() const {
    return options;
}

QStringList OvTraceBitmap::optionNames() {
    return defaultOptions().keys() + QStringList{option::UseAlpha, option::UseBrightness};
}

void OvTraceBitmap::setPalette(const QList<QList<char>>& palette) {
    this->palette = palette;
}

QList<QList<char>> OvTraceBitmap::getPalette() const {
    return palette;
}

QList<int> OvTraceBitmap::getPolylineLayers() const {
    return polylineLayers;
}

void OvTraceBitmap::setProgress(OvTraceProgress* newProgress) {
    progress = newProgress;
}

void OvTraceBitmap::seedRandom(unsigned seed) {
    ovtrace::seedRandom(seed);
}

QList<OvPolyline> OvTraceBitmap::trace(const QString& fileName) {
    return trace(QImage(fileName, nullptr));
}

QList<OvPolyline> OvTraceBitmap::trace(const QImage& image) {
    polylineLayers.clear();
    if (image.isNull() || image.width() == 0 || image.height() == 0)
        return {};
    const auto paletteBefore = palette;
    const auto optionsBefore = options;
    ProgressMeter meter(progress);
    try {
        return traceStages(image, meter);
    } catch (const TraceCancelled&) {
        restore(paletteBefore, optionsBefore);
        return {};
    } catch (...) {
        restore(paletteBefore, optionsBefore);
        throw;
    }
}

QList<OvPolyline> OvTraceBitmap::traceStages(const QImage& image, ProgressMeter& meter) {
    colorquantization(image, meter);

    const StageProgress stage = meter.stage(Scanning, 1.0);
    stage.expect(OutlineWork * std::int64_t(image.width()) * image.height());
    const LayerSet layers(*indexedImage);
    // Floored to a whole number first, unlike the two tolerances.
    const auto pathomit = static_cast<float>(floorToInt(readOption(options, option::PathOmit)));
    const auto qtres = static_cast<float>(readOption(options, option::CurveTolerance));
    const auto ltres = static_cast<float>(readOption(options, option::LineTolerance));

    // Each outline goes all the way while it is warm in the cache.
    PathScan scan(layers, pathomit, stage);
    PolylineOutput output(image.width(), image.height(), stage);
    Path path;
    InternodePath nodes;
    TracedPath traced;
    for (int layer = scan.next(path); layer >= 0; layer = scan.next(path)) {
        internodes(path, nodes, stage);
        tracepath(nodes, ltres, qtres, traced, stage);
        output.add(layer, traced);
    }
    output.finish();
    QList<OvPolyline> polylines = output.takePolylines();
    polylineLayers = output.takeLayers();
    return polylines;
}

void OvTraceBitmap::restore(const QList<QList<char>>& paletteBefore,
                            const QMap<QString, double>& optionsBefore) {
    palette = paletteBefore;
    options = optionsBefore;
    indexedImage.reset();
}

void OvTraceBitmap::preprocess(QImage& image) {
    ovtrace::preprocess(image, options);
}

QImage OvTraceBitmap::getPreprocessed(const QImage& image) {
    QImage copy = image.copy();
    if (copy.isNull() && !image.isNull())
        throw std::bad_alloc(); // the copy has found no room
    preprocess(copy);
    return copy;
}

void OvTraceBitmap::colorquantization(const QImage& image, ProgressMeter& meter) {
    indexedImage.reset(); // the last trace's indices go before new pixels come
    PixelImage imageData =
        loadPixels(image, thresholdFor(image, options), meter.stage(Loading, Sampling));
    const int colors = floorToInt(readOption(options, option::NumberOfColors));
    const double minColorRatio = readOption(options, option::MinColorRatio);
    const int cycles = floorToInt(readOption(options, option::ColorQuantCycles));
    if (palette.isEmpty()) {
        // Before the blur: a sampled palette sees the image as it was loaded.
        const bool sampling = readOption(options, option::ColorSampling) != 0.0;
        const StageProgress stage = meter.stage(Sampling, Blurring);
        palette = toColorLists(sampling ? samplepalette(imageData, colors, stage)
                                        : generatepalette(colors, stage));
    }
    const double blurRadius = readOption(options, option::BlurRadius);
    if (blurRadius > 0.0)
        blur(imageData, static_cast<float>(blurRadius),
             static_cast<float>(readOption(options, option::BlurDelta)),
             meter.stage(Blurring, Quantizing));
    Palette working = toPalette(palette);
    indexedImage = std::make_shared<const QuantizedImage>(ovtrace::colorquantization(
        std::move(imageData), working, {cycles, minColorRatio}, meter.stage(Quantizing, Scanning)));
    updateColorLists(working, palette);
}
