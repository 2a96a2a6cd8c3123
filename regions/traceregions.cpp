#include "traceregions.h"

#include "chainshapes.h"
#include "crackmap.h"
#include "findlabels.h"
#include "labelimage.h"
#include "mapassembly.h"
#include "outlines.h"
#include "regiongrid.h"
#include "regionoptions.h"
#include "release.h"
#include "specks.h"
#include "traceprogress.h"

#include <QImage>

#include <algorithm>
#include <optional>
#include <utility>

OvTraceRegions::OvTraceRegions() : options(ovtrace::defaultRegionOptions()) {
}

OvTraceRegions::OvTraceRegions(const OvTraceRegions& other) = default;
OvTraceRegions& OvTraceRegions::operator=(const OvTraceRegions& other) = default;
OvTraceRegions::~OvTraceRegions() = default;

void OvTraceRegions::setOption(const QString& key, double value) {
    options.insert(key, value);
}

double OvTraceRegions::getOption(const QString& key) const {
    return options.value(key);
}

QMap<QString, double> OvTraceRegions::getOptions() const {
    return options;
}

QStringList OvTraceRegions::optionNames() {
    return ovtrace::defaultRegionOptions().keys();
}

void OvTraceRegions::setPalette(const QList<QRgb>& colors) {
    palette = colors;
}

void OvTraceRegions::setProgress(OvTraceProgress* newProgress) {
    progress = newProgress;
}

QList<OvRegionOutline> OvTraceRegions::outlines(const ovtrace::RegionMap& map) {
    QList<OvRegionOutline> outlines;
    outlines.reserve(static_cast<qsizetype>(map.rings.size()));
    for (std::size_t i = 0; i < map.regions.size(); ++i) {
        const ovtrace::MapRegion& region = map.regions[i];
        bool hole = false;
        for (const ovtrace::MapRing& ring : map.ringsOf(region)) {
            outlines.append({ovtrace::ringPolyline(map, ring), static_cast<int>(region.color),
                             static_cast<int>(i), hole});
            hole = true;
        }
    }
    return outlines;
}

namespace ovtrace {
namespace {

const QRgb* rowOf(const QImage& image, int y) {
    return reinterpret_cast<const QRgb*>(image.constScanLine(y));
}

/// Whether an image of 32 bits a pixel has nothing but 255 where others have their alpha.
bool isOpaque(const QImage& image) {
    const auto opaque = [](QRgb pixel) { return qAlpha(pixel) == 255; };
    for (int y = 0; y < image.height(); ++y) {
        const QRgb* row = rowOf(image, y);
        if (!std::all_of(row, row + image.width(), opaque))
            return false;
    }
    return true;
}

/// The image in 32 bits a pixel, transparent pixels all of one kind. Shares the pixels of an image
/// that is so: a copy takes more than what is made of it.
QImage plainImage(const QImage& image) {
    if (image.format() == QImage::Format_RGB32 && isOpaque(image))
        return image;
    QImage plain = image.convertToFormat(QImage::Format_ARGB32);
    if (!image.hasAlphaChannel())
        return plain;
    const auto hasHiddenColor = [](QRgb pixel) { return qAlpha(pixel) == 0 && pixel != 0; };
    for (int y = 0; y < plain.height(); ++y) {
        const QRgb* row = rowOf(plain, y);
        if (std::none_of(row, row + plain.width(), hasHiddenColor))
            continue;
        auto* changed = reinterpret_cast<QRgb*>(plain.scanLine(y));
        std::replace_if(changed, changed + plain.width(), hasHiddenColor, 0U);
    }
    return plain;
}

PixelView viewOf(const QImage& image) {
    return {reinterpret_cast<const QRgb*>(image.constBits()),
            static_cast<std::size_t>(image.bytesPerLine()) / sizeof(QRgb), image.width(),
            image.height()};
}

/// Square pixels: photographs have noise, drawings have details.
double usualSpeck(const LabelImage& labels) {
    if (labels.plainColors == labels.palette.size() && labels.noise == 0)
        return 0.0;
    return labels.plainColors == 0 || labels.noise > 0 ? 5.0 : 12.0;
}

/// Reports what is done of a trace.
class Stages {
public:
    explicit Stages(OvTraceProgress* progress) : progress(progress) {
    }
    /// Returns whether the trace shall go on.
    bool done(double fraction) const {
        return progress == nullptr || progress->report(fraction);
    }

private:
    OvTraceProgress* progress;
};

} // namespace
} // namespace ovtrace

ovtrace::RegionMap OvTraceRegions::trace(const QImage& image) const {
    using namespace ovtrace;
    if (image.isNull())
        return {};
    const RegionOptions settings = readRegionOptions(options);
    Stages stages(progress);
    QImage plain = plainImage(image);
    const PixelView pixels = viewOf(plain);
    LabelImage labels = findLabels(pixels, {palette.begin(), palette.end()}, settings);
    if (!stages.done(0.3))
        return {};
    RegionGrid grid = findRegions(pixels, labels);
    const double speck = settings.speck >= 0.0 ? settings.speck : usualSpeck(labels);
    if (mergeSpecks(labels, grid, speck)) {
        grid = {};
        grid = findRegions(pixels, labels);
    }
    if (!stages.done(0.4))
        return {};
    const CrackMap cracks = walkCracks(grid);
    release(grid.ids); // where areas lie is known by their edges from here on
    if (!stages.done(0.5))
        return {};
    FitOptions fit;
    fit.tolerance = settings.tolerance;
    fit.cubics = settings.cubics;
    const auto go = [&stages](double fraction) { return stages.done(0.5 + fraction / 2.0); };
    std::optional<ShapedChains> shapes =
        settings.exactPixels ? pixelEdges(cracks) : fitChains(pixels, labels, cracks, fit, go);
    if (!shapes)
        return {};
    plain = {};
    release(labels.labels);
    return assembleMap(grid, cracks, std::move(*shapes), labels.palette);
}
