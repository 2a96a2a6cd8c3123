#include "chainshapes.h"

#include "edgeplaces.h"

#include "shapes/joining.h"

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
        : width(image.width), height(image.height), places(image, labels, {}), cracks(cracks),
          options(options) {
    }

    ShapedChains run() {
        fitted.resize(cracks.chains.size());
        for (std::size_t i = 0; i < cracks.chains.size(); ++i)
            fit(i);
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
        std::vector<std::vector<const Carrier*>> ends(cracks.junctions.size());
        for (std::size_t i = 0; i < cracks.chains.size(); ++i) {
            const CrackChain& chain = cracks.chains[i];
            const ChainModel& model = fitted[i].model;
            if (chain.from < 0 || model.carriers.empty())
                continue;
            ends[static_cast<std::size_t>(chain.from)].push_back(&model.carriers.front());
            ends[static_cast<std::size_t>(chain.to)].push_back(&model.carriers.back());
        }
        for (std::size_t i = 0; i < cracks.junctions.size(); ++i)
            shapes.junctions.push_back(meeting(cracks.junctions[i], ends[i]));
    }

    /// The place next to all carriers, near the corner between pixels where the chains meet; on the
    /// rim of the image it stays there.
    Point meeting(GridPoint corner, const std::vector<const Carrier*>& carriers) const {
        const Point start = toPoint(corner);
        const bool fixedX = corner.x == 0 || corner.x == width;
        const bool fixedY = corner.y == 0 || corner.y == height;
        Point at = start;
        for (int round = 0; round < 4; ++round) {
            // The corner itself counts as a place known to a pixel, the carriers to a hundredth.
            constexpr double CornerWeight = 1e-3;
            double xx = CornerWeight;
            double xy = 0.0;
            double yy = CornerWeight;
            Point sum = (start - at) * CornerWeight;
            for (const Carrier* carrier : carriers) {
                const Point way = projected(*carrier, at) - at;
                const Point normal = turnedQuarter(directionAt(*carrier, at));
                const double off = dot(way, normal);
                xx += normal.x * normal.x;
                xy += normal.x * normal.y;
                yy += normal.y * normal.y;
                sum += normal * off;
            }
            if (fixedX && fixedY)
                break;
            if (fixedX) {
                at.y += sum.y / yy;
            } else if (fixedY) {
                at.x += sum.x / xx;
            } else {
                const double determinant = xx * yy - xy * xy;
                at += Point{(sum.x * yy - sum.y * xy) / determinant,
                            (sum.y * xx - sum.x * xy) / determinant};
            }
        }
        constexpr double Farthest = 2.0; // pixels: beyond, the carriers are not those of the corner
        if (!isFinite(at) || distance(at, start) > Farthest)
            return start;
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
        const FittedChain& f = fitted[i];
        std::vector<Piece> pieces;
        if (!f.model.carriers.empty())
            pieces = joinChain(f.model, f.samples, options, start, end);
        if (pieces.empty())
            pieces = polygonThrough(f.samples, chain.from < 0, start, end);
        shapes.pieces.insert(shapes.pieces.end(), pieces.begin(), pieces.end());
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

ShapedChains fitChains(const PixelView& image, const LabelImage& labels, const CrackMap& cracks,
                       const FitOptions& options) {
    return ChainFitter(image, labels, cracks, options).run();
}

} // namespace ovtrace
