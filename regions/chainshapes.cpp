#include "chainshapes.h"

#include "chaincheck.h"
#include "edgeplaces.h"

#include "shapes/joining.h"
#include "shapes/junctions.h"

#include <algorithm>
#include <optional>

namespace ovtrace {
namespace {

Point toPoint(GridPoint p) {
    return {static_cast<double>(p.x), static_cast<double>(p.y)};
}

/// A chain on its way to a curve.
struct FittedChain {
    std::vector<Sample> samples;
    ChainModel model;
};

class ChainFitter {
public:
    ChainFitter(const PixelView& image, const LabelImage& labels, const CrackMap& cracks,
                const FitOptions& options)
        : width(image.width), height(image.height), places(image, labels, {labels.noise}),
          cracks(cracks), options(options) {
    }

    std::optional<ShapedChains> run(const std::function<bool(double)>& report) {
        fitted.resize(cracks.chains.size());
        std::size_t steps = 0;
        for (std::size_t i = 0; i < cracks.chains.size(); ++i) {
            fit(i);
            steps += cracks.chains[i].stepCount;
            // A thousand steps take less than 20 ms.
            if (steps / 1024 != (steps - cracks.chains[i].stepCount) / 1024 &&
                !report(0.8 * double(steps) / double(cracks.steps.size())))
                return std::nullopt;
        }
        placeJunctions();
        for (std::size_t i = 0; i < cracks.chains.size(); ++i) {
            shapes.starts.push_back(shapes.pieces.size());
            join(i);
        }
        shapes.starts.push_back(shapes.pieces.size());
        return std::move(shapes);
    }

private:
    /// Whether a chain runs along the image's rim.
    bool isRim(const CrackChain& chain) const {
        const Step step = cracks.steps[chain.firstStep];
        const GridPoint a = pixelLeftOf(chain.start, step);
        const GridPoint b = pixelRightOf(chain.start, step);
        return !contains(a) || !contains(b);
    }
    bool contains(GridPoint pixel) const {
        return pixel.x >= 0 && pixel.y >= 0 && pixel.x < width && pixel.y < height;
    }

    void fit(std::size_t i) {
        const CrackChain& chain = cracks.chains[i];
        if (isRim(chain))
            return;
        fitted[i].samples = places.placesOf(cracks, chain);
        fitted[i].model = segmentChain(fitted[i].samples, chain.from < 0, options);
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
        const bool fixedX = corner.x == 0 || corner.x == width;
        const bool fixedY = corner.y == 0 || corner.y == height;
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
        return {std::clamp(at.x, 0.0, double(width)), std::clamp(at.y, 0.0, double(height))};
    }

    void join(std::size_t i) {
        const CrackChain& chain = cracks.chains[i];
        if (isRim(chain)) {
            joinRim(chain);
            return;
        }
        std::optional<Point> start;
        std::optional<Point> end;
        if (chain.from >= 0) {
            start = shapes.junctions[static_cast<std::size_t>(chain.from)];
            end = shapes.junctions[static_cast<std::size_t>(chain.to)];
        }
        const std::vector<Sample>& samples = fitted[i].samples;
        std::vector<Piece> pieces = joined(chain, fitted[i].model, samples, start, end);
        if (pieces.empty()) {
            const std::vector<Sample> tight = tightened(samples);
            pieces = joined(chain, segmentChain(tight, chain.from < 0, options), tight, start, end);
        }
        // Nearer to their own edges between pixels than to any other.
        constexpr double Half = 0.45;
        if (pieces.empty())
            pieces =
                polygonThrough(places.placesOf(cracks, chain, Half), chain.from < 0, start, end);
        // Both junctions and all samples in one place: the boundary still has its start and end.
        if (pieces.empty()) {
            const Point only = start ? *start : samples.front().at;
            pieces.push_back(linePiece(only, only));
        }
        shapes.pieces.insert(shapes.pieces.end(), pieces.begin(), pieces.end());
    }
    /// The curve of a model; nothing when it does not follow the samples.
    std::vector<Piece> joined(const CrackChain& chain, const ChainModel& model,
                              const std::vector<Sample>& samples, std::optional<Point> start,
                              std::optional<Point> end) const {
        if (model.carriers.empty())
            return {};
        std::vector<Piece> pieces = joinChain(model, samples, options, start, end);
        if (!pieces.empty() && !followsSamples(pieces, samples, chain.from < 0))
            pieces.clear();
        return pieces;
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
    void joinRim(const CrackChain& chain) {
        Point from = chain.from >= 0 ? shapes.junctions[static_cast<std::size_t>(chain.from)]
                                     : toPoint(chain.start);
        GridPoint p = chain.start;
        for (std::size_t i = 0; i < chain.stepCount; ++i) {
            const Step step = cracks.steps[chain.firstStep + i];
            p = p + step;
            const bool last = i + 1 == chain.stepCount;
            if (!last && cracks.steps[chain.firstStep + i + 1] == step)
                continue;
            const Point to = last && chain.to >= 0
                                 ? shapes.junctions[static_cast<std::size_t>(chain.to)]
                                 : toPoint(p);
            shapes.pieces.push_back(linePiece(from, to));
            from = to;
        }
    }

    int width;
    int height;
    EdgePlaces places;
    const CrackMap& cracks;
    const FitOptions& options;
    std::vector<FittedChain> fitted;
    ShapedChains shapes;
};

} // namespace

std::optional<ShapedChains> fitChains(const PixelView& image, const LabelImage& labels,
                                      const CrackMap& cracks, const FitOptions& options,
                                      const std::function<bool(double)>& report) {
    return ChainFitter(image, labels, cracks, options).run(report);
}

} // namespace ovtrace
