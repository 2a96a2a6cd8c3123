#include "tracecenterlines.h"

#include "alignment.h"
#include "arrowheads.h"
#include "centerlineoptions.h"
#include "centerlineoutput.h"
#include "dashes.h"
#include "distance.h"
#include "doubling.h"
#include "ellipses.h"
#include "hatching.h"
#include "inklevels.h"
#include "inkmask.h"
#include "merging.h"
#include "outlines.h"
#include "pace.h"
#include "profiles.h"
#include "shortbars.h"
#include "skeleton.h"
#include "solids.h"
#include "strokeends.h"
#include "strokepaths.h"
#include "tangents.h"
#include "textfinder.h"
#include "thinning.h"
#include "touchingtext.h"
#include "widthclasses.h"

#include <QImage>

#include <algorithm>

using namespace ovtrace;

namespace {

/// More parts than lettering ever has: noise.
constexpr double MostComponentsPerMegapixel = 20000.0;

bool isTwoLevels(const InkLevels& ink) {
    std::size_t grey = 0;
    std::size_t black = 0;
    for (const std::uint8_t level : ink.levels) {
        grey += level > 16 && level < 239 ? 1 : 0;
        black += level >= 239 ? 1 : 0;
    }
    return grey * 50 < black;
}

/// A dot by itself that is smaller than the pen is dirt; as a part of a dashed line it is none.
void dropDirt(std::vector<Stroke>& strokes, double strokeWidth) {
    for (Stroke& stroke : strokes)
        if (stroke.dashes.empty() && !stroke.closed &&
            lengthOf(stroke) * stroke.width < 0.8 * strokeWidth * strokeWidth &&
            stroke.ends[0].next < 0 && stroke.ends[1].next < 0)
            stroke.dropped = true;
}

/// Joins the ends of strokes and returns the nodes. What only then proves to lie within others, a
/// stub in the cusp of two arcs, takes no part in it.
std::vector<Point> joinAll(std::vector<Stroke>& strokes, const InkLevels& ink,
                           const Measure& measure, Pace& pace) {
    std::vector<Stroke> apart = strokes;
    const std::vector<Point> nodes = joinEnds(strokes, ink, measure, pace);
    const std::vector<int> stubs = dropExplainedStubs(strokes, pace);
    if (stubs.empty())
        return nodes;
    for (const int i : stubs)
        apart[static_cast<std::size_t>(i)].dropped = true;
    strokes = std::move(apart);
    return joinEnds(strokes, ink, measure, pace);
}

/// What the ink holds; nothing where it is only noise, which `noise` then says.
Found findStrokes(InkLevels ink, const CenterlineOptions& options, const Raster& raster,
                  bool& noise, Pace& pace) {
    const bool twoLevels = raster.twoLevels;
    const double megapixels = static_cast<double>(ink.levels.size()) / 1e6;
    pace.stage(0.2);
    InkMask mask = inkMask(ink, options.threshold, pace);
    InkComponents components = findComponents(mask, InkMask::Ink, pace);
    despeckle(components, options.speckArea, mask, ink);
    Found found;
    noise = static_cast<double>(components.components.size()) >
            MostComponentsPerMegapixel * std::max(megapixels, 0.05);
    if (noise)
        return found;
    pace.stage(0.35);
    std::vector<std::uint8_t> distance = distanceToPaper(mask, pace);
    const std::uint8_t ridge = medianRidge(mask, distance, pace);
    // The depth of one pixel is that of strokes of one and of two.
    const double strokeWidth = std::max(2.0 * halfWidthAt(ridge), 2.0);
    pace.stage(0.45);
    markSolids(mask, distance, components, ridge, {}, pace);
    markText(mask, components, options.textSize * strokeWidth, strokeWidth, pace);
    pace.stage(0.6);
    std::vector<Stroke> bars = takeShortBars(mask, ink, components, 4.0 * strokeWidth + 4.0,
                                             raster.scale * (twoLevels ? 0.25 : 0.1), pace);
    const std::vector<std::size_t> thinned = thin(mask, pace);
    const Skeleton skeleton = buildSkeleton(mask, thinned, distance, pace);
    pace.stage(0.7);
    const std::vector<std::vector<StrokePoint>> profiles =
        strokeProfiles(ink, mask, distance, skeleton, pace);
    const Measure measure = measureNoise(profiles, raster);
    pace.stage(0.8);
    std::vector<Stroke> strokes = fitStrokes(skeleton, profiles, measure, pace);
    pace.stage(0.9);
    mergeStrokes(strokes, ink, measure, pace);
    if (straightenFlat(strokes, measure))
        mergeStrokes(strokes, ink, measure, pace);
    dropExplained(strokes, pace);
    markTouchingText(mask, ink, options.threshold, strokes, options.textSize * strokeWidth,
                     strokeWidth, pace);
    strokes.insert(strokes.end(), std::make_move_iterator(bars.begin()),
                   std::make_move_iterator(bars.end()));
    joinDashes(strokes, ink, measure, pace);
    dropDirt(strokes, strokeWidth);
    alignLines(strokes);
    makeTangent(strokes, measure);
    completeHatching(strokes, ink);
    found.nodes = joinAll(strokes, ink, measure, pace);
    findEllipses(strokes, found.nodes, measure);
    dropImpossible(strokes, ink.width, ink.height);
    markHatching(strokes, ink);
    found.areas = outlineAreas(ink, mask, InkMask::Solid, pace);
    std::vector<InkArea> heads = findArrowHeads(ink, mask, strokes);
    found.areas.insert(found.areas.end(), std::make_move_iterator(heads.begin()),
                       std::make_move_iterator(heads.end()));
    // The heart of a star and the blunt meeting of narrow angles look like filled areas.
    std::erase_if(found.areas, [&](const InkArea& area) {
        return liesInStrokes(area.rings.front(), strokes, 1.0);
    });
    std::vector<InkArea> text = outlineAreas(ink, mask, InkMask::Text, pace);
    found.areas.insert(found.areas.end(), std::make_move_iterator(text.begin()),
                       std::make_move_iterator(text.end()));
    found.widths = classifyWidths(strokes);
    found.strokes = std::move(strokes);
    return found;
}

OvCenterlines traceInk(const QImage& image, const InkLevels& ink, CenterlineOptions options,
                       Pace& pace) {
    OvCenterlines result;
    result.width = ink.width;
    result.height = ink.height;
    bool noise = false;
    const bool twice = isNarrow(ink, options.threshold, pace);
    if (twice)
        options.speckArea *= 4;
    const Raster raster{isTwoLevels(ink), twice ? 2 : 1};
    Found found = findStrokes(twice ? doubled(ink, pace) : ink, options, raster, noise, pace);
    if (noise) {
        result.message = QStringLiteral("The image holds no lines, only noise.");
        return result;
    }
    if (twice)
        halve(found);
    found.colors = findColors(image, ink, found.strokes, found.areas);
    writeCenterlines(found, result);
    pace.stage(1.0);
    return result;
}

} // namespace

OvTraceCenterlines::OvTraceCenterlines() : options(defaultCenterlineOptions()) {
}

OvTraceCenterlines::OvTraceCenterlines(const OvTraceCenterlines& other) = default;
OvTraceCenterlines& OvTraceCenterlines::operator=(const OvTraceCenterlines& other) = default;
OvTraceCenterlines::~OvTraceCenterlines() = default;

void OvTraceCenterlines::setOption(const QString& key, double value) {
    options[key] = value;
}

double OvTraceCenterlines::getOption(const QString& key) const {
    return options.value(key);
}

QMap<QString, double> OvTraceCenterlines::getOptions() const {
    return options;
}

QStringList OvTraceCenterlines::optionNames() {
    return defaultCenterlineOptions().keys();
}

void OvTraceCenterlines::setProgress(OvTraceProgress* progress) {
    this->progress = progress;
}

OvCenterlines OvTraceCenterlines::trace(const QImage& image) {
    if (image.isNull() || image.width() == 0 || image.height() == 0)
        return {};
    try {
        Pace pace(progress);
        pace.stage(0.1);
        return traceInk(image, inkLevels(image, pace), readCenterlineOptions(options), pace);
    } catch (const TraceCancelled&) {
        return {};
    }
}

QList<OvPolyline> OvTraceCenterlines::polylines(const OvCenterlines& centerlines) {
    return polylinesOf(centerlines);
}
