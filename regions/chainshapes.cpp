#include "chainshapes.h"

#include "chaincheck.h"
#include "edgeplaces.h"
#include "plainjoining.h"
#include "release.h"
#include "separation.h"
#include "squarecorners.h"
#include "wholepixels.h"

#include "shapes/joining.h"
#include "shapes/junctions.h"
#include "shapes/regularity.h"

#include <algorithm>
#include <limits>
#include <optional>

namespace ovtrace {
namespace {

Point toPoint(GridPoint p) {
    return {static_cast<double>(p.x), static_cast<double>(p.y)};
}

/// Whether all places were rounded to the edges between pixels, as in images of one bit.
bool areRounded(std::span<const Sample> samples) {
    constexpr double RoundedSigma = 0.28;
    return std::all_of(samples.begin(), samples.end(),
                       [](const Sample& sample) { return sample.sigma >= RoundedSigma; });
}

/// A chain on its way to a curve.
struct FittedChain {
    std::vector<Sample> samples; ///< until it is joined, as they take more than all else
    ChainModel model;            ///< until then
    bool followsModel = false;   ///< its curve is that of the model
    /// The curve as it would be without the others; none when it is as it would be.
    std::vector<Piece> alone;
};

class ChainFitter {
public:
    ChainFitter(const PixelView& image, const LabelImage& labels, const CrackMap& cracks,
                const FitOptions& options)
        : image(image), labels(labels), places(image, labels, {labels.noise}), cracks(cracks),
          options(options) {
    }

    std::optional<ShapedChains> run(const std::function<bool(double)>& report) {
        fitted.resize(cracks.chains.size());
        curves.resize(cracks.chains.size());
        std::size_t steps = 0;
        for (std::size_t i = 0; i < cracks.chains.size(); ++i) {
            fit(i);
            if (cracks.chains[i].from < 0 && !fitted[i].model.isCircle)
                join(i);
            steps += cracks.chains[i].stepCount;
            // A thousand steps take less than 20 ms.
            if (steps / 1024 != (steps - cracks.chains[i].stepCount) / 1024 &&
                !report(0.8 * double(steps) / double(cracks.steps.size())))
                return std::nullopt;
        }
        matchWholeCircles();
        placeJunctions();
        for (std::size_t i = 0; i < cracks.chains.size(); ++i) {
            if (cracks.chains[i].from >= 0 || fitted[i].model.isCircle)
                join(i);
        }
        if (!separate(report))
            return std::nullopt;
        gather();
        return std::move(shapes);
    }

private:
    /// The curves one after another, each let go at once.
    void gather() {
        release(fitted);
        std::size_t count = 0;
        shapes.starts.reserve(curves.size() + 1);
        for (const std::vector<Piece>& curve : curves) {
            shapes.starts.push_back(count);
            count += curve.size();
        }
        shapes.starts.push_back(count);
        shapes.pieces.reserve(count);
        for (std::vector<Piece>& curve : curves) {
            shapes.pieces.insert(shapes.pieces.end(), curve.begin(), curve.end());
            release(curve);
        }
    }

    /// Samples of a part that is worth a curve of its own.
    static constexpr std::size_t LongPart = 12;

    /// Whether a chain runs along the image's rim.
    bool isRim(const CrackChain& chain) const {
        const Step step = cracks.steps[chain.firstStep];
        const GridPoint a = pixelLeftOf(chain.start, step);
        const GridPoint b = pixelRightOf(chain.start, step);
        return !contains(a) || !contains(b);
    }
    bool contains(GridPoint pixel) const {
        return pixel.x >= 0 && pixel.y >= 0 && pixel.x < image.width && pixel.y < image.height;
    }

    void fit(std::size_t i) {
        const CrackChain& chain = cracks.chains[i];
        if (isRim(chain))
            return;
        FittedChain& f = fitted[i];
        f.samples = places.placesOf(cracks, chain);
        f.model = modelOf(f.samples, chain.from < 0);
    }

    /// Rounded places have a bound, and none is worse than the others, as those beside the corners
    /// of mixed pixels are.
    FitOptions optionsFor(std::span<const Sample> samples) const {
        FitOptions chosen = options;
        if (areRounded(samples)) {
            // Half a pixel for the rounding, and nearly as much for what the fit makes of it.
            constexpr double MostOff = 0.9;
            chosen.mostOff = std::max(MostOff, options.tolerance);
            chosen.skipCost = std::numeric_limits<double>::infinity();
        }
        return chosen;
    }

    ChainModel modelOf(std::span<const Sample> samples, bool closed) const {
        ChainModel model = segmentChain(samples, closed, optionsFor(samples));
        alignLines(model.carriers);
        return model;
    }

    void matchWholeCircles() {
        std::vector<Carrier*> circles;
        for (FittedChain& chain : fitted) {
            if (chain.model.isCircle)
                circles.push_back(&chain.model.carriers.front());
        }
        matchCircles(circles);
    }

    /// The carriers that end in each junction.
    void placeJunctions() {
        std::vector<std::vector<JunctionEnd>> ends(cracks.junctions.size());
        for (std::size_t i = 0; i < cracks.chains.size(); ++i) {
            const CrackChain& chain = cracks.chains[i];
            const ChainModel& model = fitted[i].model;
            if (chain.from < 0 || model.carriers.empty())
                continue;
            const Carrier& first = model.carriers.front();
            const Carrier& last = model.carriers.back();
            const std::vector<Sample>& samples = fitted[i].samples;
            ends[static_cast<std::size_t>(chain.from)].push_back(
                {first, samples[static_cast<std::size_t>(first.first)].at});
            ends[static_cast<std::size_t>(chain.to)].push_back(
                {last, samples[static_cast<std::size_t>(last.last)].at});
        }
        for (std::size_t i = 0; i < cracks.junctions.size(); ++i)
            shapes.junctions.push_back(meeting(cracks.junctions[i], ends[i]));
    }

    /// The place next to all carriers; on the rim of the image it stays there.
    Point meeting(GridPoint corner, const std::vector<JunctionEnd>& found) const {
        constexpr double Spread = 0.7;   // pixels: how far a junction may be from its corner
        constexpr double Farthest = 2.0; // pixels: beyond, the carriers are not those of the corner
        const Point around = toPoint(corner);
        const bool fixedX = corner.x == 0 || corner.x == image.width;
        const bool fixedY = corner.y == 0 || corner.y == image.height;
        if (fixedX && fixedY)
            return around;
        std::vector<JunctionEnd> ends = found;
        if (fixedX || fixedY) {
            Carrier rim;
            rim.at = around;
            rim.direction = fixedX ? Point{0.0, 1.0} : Point{1.0, 0.0};
            ends.push_back({rim, around});
        }
        Point at = meetingPoint(ends, around, Spread);
        if (!isFinite(at) || distance(at, around) > Farthest)
            at = around;
        if (fixedX)
            at.x = around.x;
        if (fixedY)
            at.y = around.y;
        return {std::clamp(at.x, 0.0, double(image.width)),
                std::clamp(at.y, 0.0, double(image.height))};
    }

    void join(std::size_t i) {
        const CrackChain& chain = cracks.chains[i];
        if (isRim(chain)) {
            joinRim(i);
            return;
        }
        std::optional<Point> start;
        std::optional<Point> end;
        if (chain.from >= 0) {
            start = shapes.junctions[static_cast<std::size_t>(chain.from)];
            end = shapes.junctions[static_cast<std::size_t>(chain.to)];
        }
        FittedChain& f = fitted[i];
        std::vector<Piece>& pieces = curves[i];
        pieces = joined(chain.from < 0, f.model, f.samples, start, end);
        f.followsModel = !pieces.empty();
        std::vector<Sample> near;
        if (pieces.empty() && mayJoinPlainly(f.model, f.samples)) {
            near = places.placesOf(cracks, chain, EdgePlaces::Beside);
            pieces = joinedPlainly(f.model, f.samples, near, start, end);
        }
        if (pieces.empty()) {
            const std::vector<Sample> tight = tightened(f.samples);
            pieces = joined(chain.from < 0, modelOf(tight, chain.from < 0), tight, start, end);
        }
        if (pieces.empty()) {
            if (near.empty())
                near = places.placesOf(cracks, chain, EdgePlaces::Beside);
            if (near.size() > LongPart)
                joinParts(f.samples, near, start.value_or(near.front().at),
                          end.value_or(near.front().at), pieces);
            else
                pieces = polygonThrough(near, chain.from < 0, start, end);
        }
        if (!near.empty())
            squareCorners(chain, f.samples, pieces);
        // Both junctions and all samples in one place: the boundary still has its start and
        // end.
        if (pieces.empty()) {
            const Point only = start ? *start : f.samples.front().at;
            pieces.push_back(linePiece(only, only));
        }
        pieces.shrink_to_fit();
        release(f.samples);
        f.model = {};
    }

    /// Gives a polygon through places the corners that it cuts.
    void squareCorners(const CrackChain& chain, std::span<const Sample> samples,
                       std::vector<Piece>& pieces) const {
        if (labels.noise > 0 || areRounded(samples))
            return;
        const Step step = cracks.steps[chain.firstStep];
        const GridPoint left = pixelLeftOf(chain.start, step);
        const GridPoint right = pixelRightOf(chain.start, step);
        std::vector<Piece> squared = withSquareCorners(
            pieces, image, labels, labels.at(left.x, left.y), labels.at(right.x, right.y));
        if (!crossesWholePixels(squared, samples, chain.from < 0))
            pieces = std::move(squared);
    }

    bool mayJoinPlainly(const ChainModel& model, std::span<const Sample> samples) const {
        return !model.carriers.empty() && isShortAndExact(samples);
    }
    /// What many exact places support, and the places between; nothing when that does not follow
    /// the samples either.
    std::vector<Piece> joinedPlainly(const ChainModel& model, const std::vector<Sample>& samples,
                                     std::span<const Sample> near, std::optional<Point> start,
                                     std::optional<Point> end) const {
        std::vector<Piece> pieces = joinPlainly(model, samples, near, start, end);
        if (!pieces.empty() && isContradicted(pieces, samples, model.closed))
            pieces.clear();
        return pieces;
    }

    /// Joins a chain half by half where its whole curve does not follow the samples, so that the
    /// places which no curve follows are a polygon and the others are not. `near` holds the same
    /// samples beside their edges between pixels.
    void joinParts(std::span<const Sample> samples, std::span<const Sample> near, Point start,
                   Point end, std::vector<Piece>& pieces) const {
        const std::vector<Sample> own(samples.begin(), samples.end());
        const ChainModel model = modelOf(own, false);
        std::vector<Piece> part = joined(false, model, own, start, end);
        // Its ends lie on places of the chain, where pixels are mixed as well.
        if (!part.empty() && crossesWholePixels(part, own, true))
            part.clear();
        if (part.empty() && samples.size() > LongPart && mayJoinPlainly(model, own))
            part = joinedPlainly(model, own, near, start, end);
        if (part.empty() && samples.size() <= LongPart)
            part = polygonThrough(near, false, start, end);
        if (!part.empty()) {
            pieces.insert(pieces.end(), part.begin(), part.end());
            return;
        }
        const std::size_t half = samples.size() / 2;
        const Point middle = near[half].at;
        joinParts(samples.first(half), near.first(half), start, middle, pieces);
        joinParts(samples.subspan(half + 1), near.subspan(half + 1), middle, end, pieces);
    }

    /// Curves do not see each other.
    bool separate(const std::function<bool(double)>& report) {
        Separation separation(cracks);
        while (separation.search(curves)) {
            if (!report(0.9))
                return false;
            const std::vector<bool> moved = pinJunctions(separation);
            const auto isMoved = [&moved](std::int32_t junction) {
                return junction >= 0 && moved[static_cast<std::size_t>(junction)];
            };
            for (std::size_t i = 0; i < cracks.chains.size(); ++i) {
                const CrackChain& chain = cracks.chains[i];
                if (!separation.isChanged(i) && !isMoved(chain.from) && !isMoved(chain.to))
                    continue;
                if (isMoved(chain.from) || isMoved(chain.to))
                    moveEnds(i);
                patch(i, separation.stepsBeside(i));
            }
        }
        return true;
    }
    /// Returns which junctions have moved.
    std::vector<bool> pinJunctions(const Separation& separation) {
        std::vector<bool> moved(cracks.junctions.size(), false);
        for (std::size_t i = 0; i < moved.size(); ++i) {
            if (!separation.isPinned(i))
                continue;
            const Point corner = toPoint(cracks.junctions[i]);
            const auto near = [](double place, double middle) {
                return std::clamp(place, middle - EdgePlaces::Beside, middle + EdgePlaces::Beside);
            };
            Point& at = shapes.junctions[i];
            const Point pinned{near(at.x, corner.x), near(at.y, corner.y)};
            moved[i] = pinned != at;
            at = pinned;
        }
        return moved;
    }
    /// Leads a chain to its junctions where they are now.
    void moveEnds(std::size_t i) {
        const CrackChain& chain = cracks.chains[i];
        const Point start = shapes.junctions[static_cast<std::size_t>(chain.from)];
        const Point end = shapes.junctions[static_cast<std::size_t>(chain.to)];
        FittedChain& f = fitted[i];
        if (isRim(chain)) {
            joinRim(i);
            return;
        }
        std::vector<Piece> pieces;
        if (f.followsModel) {
            const std::vector<Sample> samples = places.placesOf(cracks, chain);
            pieces = joined(false, modelOf(samples, false), samples, start, end);
        }
        if (pieces.empty())
            pieces = bentTo(f.alone.empty() ? curves[i] : f.alone, start, end);
        curves[i] = pieces;
        if (!f.alone.empty())
            f.alone = std::move(pieces);
    }
    void patch(std::size_t i, const PatchedSteps& steps) {
        const CrackChain& chain = cracks.chains[i];
        if (steps.empty() || isRim(chain))
            return;
        FittedChain& f = fitted[i];
        if (f.alone.empty())
            f.alone = curves[i];
        curves[i] =
            patched(f.alone, places.placesBeside(cracks, chain), steps.all(), chain.from < 0);
        curves[i].shrink_to_fit();
    }

    /// The curve of a model; nothing when it does not follow the samples.
    std::vector<Piece> joined(bool closed, const ChainModel& model,
                              const std::vector<Sample>& samples, std::optional<Point> start,
                              std::optional<Point> end) const {
        if (model.carriers.empty())
            return {};
        std::vector<Piece> pieces = joinChain(model, samples, optionsFor(samples), start, end);
        if (!pieces.empty() && isContradicted(pieces, samples, closed))
            pieces.clear();
        return pieces;
    }
    /// Whether a curve does not follow the samples, or runs where no pixel is mixed; those of
    /// rounded places do everywhere.
    bool isContradicted(std::span<const Piece> pieces, std::span<const Sample> samples,
                        bool closed) const {
        if (!followsSamples(pieces, samples, closed))
            return true;
        return crossesWholePixels(pieces, samples, closed);
    }
    bool crossesWholePixels(std::span<const Piece> pieces, std::span<const Sample> samples,
                            bool closed) const {
        return isShortAndExact(samples) && crossWholePixels(pieces, image, labels, closed);
    }
    /// Whether the samples tell places within pixels and are no more than a letter has: a
    /// renderer's rough coverage in one place shall not cost a long chain its curves.
    bool isShortAndExact(std::span<const Sample> samples) const {
        constexpr std::size_t Most = 128;
        return samples.size() <= Most && labels.noise == 0 && !areRounded(samples);
    }
    /// All places as if each were known to a part of a pixel: the doubtful ones, too.
    static std::vector<Sample> tightened(const std::vector<Sample>& samples) {
        constexpr double PartOfPixel = 0.2;
        std::vector<Sample> tight;
        for (const Sample& sample : samples)
            tight.push_back({sample.at, PartOfPixel, false});
        return tight;
    }
    /// Along the image's rim: straight lines, corners where those of the image are.
    void joinRim(std::size_t i) {
        const CrackChain& chain = cracks.chains[i];
        std::vector<Piece>& pieces = curves[i];
        pieces.clear();
        Point from = chain.from >= 0 ? shapes.junctions[static_cast<std::size_t>(chain.from)]
                                     : toPoint(chain.start);
        GridPoint p = chain.start;
        for (std::size_t k = 0; k < chain.stepCount; ++k) {
            const Step step = cracks.steps[chain.firstStep + k];
            p = p + step;
            const bool last = k + 1 == chain.stepCount;
            if (!last && cracks.steps[chain.firstStep + k + 1] == step)
                continue;
            const Point to = last && chain.to >= 0
                                 ? shapes.junctions[static_cast<std::size_t>(chain.to)]
                                 : toPoint(p);
            pieces.push_back(linePiece(from, to));
            from = to;
        }
    }

    const PixelView& image;
    const LabelImage& labels;
    EdgePlaces places;
    const CrackMap& cracks;
    const FitOptions& options;
    std::vector<FittedChain> fitted;
    std::vector<std::vector<Piece>> curves; ///< of the chains
    ShapedChains shapes;
};

} // namespace

std::optional<ShapedChains> fitChains(const PixelView& image, const LabelImage& labels,
                                      const CrackMap& cracks, const FitOptions& options,
                                      const std::function<bool(double)>& report) {
    return ChainFitter(image, labels, cracks, options).run(report);
}

} // namespace ovtrace
