#include "traceregions.h"

#include "chainshapes.h"
#include "crackmap.h"
#include "labelimage.h"
#include "mapassembly.h"
#include "mixlabels.h"
#include "outlines.h"
#include "purecolors.h"
#include "regiongrid.h"

#include <QImage>

OvTraceRegions::OvTraceRegions() = default;
OvTraceRegions::OvTraceRegions(const OvTraceRegions& other) = default;
OvTraceRegions& OvTraceRegions::operator=(const OvTraceRegions& other) = default;
OvTraceRegions::~OvTraceRegions() = default;

void OvTraceRegions::setOption(const QString& key, double value) {
    options.insert(key, value);
}

void OvTraceRegions::setPalette(const QList<QRgb>& colors) {
    palette = colors;
}

void OvTraceRegions::setProgress(OvTraceProgress* other) {
    progress = other;
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

/// The image in 32 bits a pixel, transparent pixels all of one kind.
QImage plainImage(const QImage& image) {
    QImage plain = image.convertToFormat(QImage::Format_ARGB32);
    if (!image.hasAlphaChannel())
        return plain;
    for (int y = 0; y < plain.height(); ++y) {
        auto* row = reinterpret_cast<QRgb*>(plain.scanLine(y));
        for (int x = 0; x < plain.width(); ++x) {
            if (qAlpha(row[x]) == 0)
                row[x] = 0;
        }
    }
    return plain;
}

PixelView viewOf(const QImage& image) {
    return {reinterpret_cast<const QRgb*>(image.constBits()),
            static_cast<std::size_t>(image.bytesPerLine()) / sizeof(QRgb), image.width(),
            image.height()};
}

} // namespace
} // namespace ovtrace

ovtrace::RegionMap OvTraceRegions::trace(const QImage& image) const {
    using namespace ovtrace;
    if (image.isNull())
        return {};
    const QImage plain = plainImage(image);
    const PixelView pixels = viewOf(plain);
    std::vector<QRgb> colors(palette.begin(), palette.end());
    if (colors.empty()) {
        const PureColors pure = findPureColors(pixels);
        for (const ColorCounts::Entry& entry : pure.blocks.entries())
            colors.push_back(entry.color);
    }
    if (colors.empty())
        colors = {qRgb(0, 0, 0), qRgb(255, 255, 255)};
    const LabelImage labels = labelPixels(pixels, colors, {});
    const RegionGrid grid = findRegions(pixels, labels);
    const CrackMap cracks = walkCracks(grid);
    const bool pixels_ = options.value("fit", 1.0) == 0.0;
    FitOptions fit;
    fit.tolerance = options.value("tolerance", fit.tolerance);
    ShapedChains shapes = pixels_ ? pixelEdges(cracks) : fitChains(pixels, labels, cracks, fit);
    return assembleMap(grid, cracks, std::move(shapes), labels.palette);
}
