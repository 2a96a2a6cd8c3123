#include "mixlabels.h"

#include "clusters.h"
#include "colorcounts.h"
#include "linelabels.h"
#include "mix.h"
#include "mixing.h"

#include <algorithm>
#include <cmath>
#include <optional>

namespace ovtrace {
namespace {

/// The different labels of the known pixels around a place, the nearest first.
struct Neighbours {
    static constexpr int Most = 6;
    std::array<std::uint16_t, Most> label{};
    int count = 0;

    void add(std::uint16_t added) {
        if (added == UnknownLabel || count == Most)
            return;
        if (std::find(label.begin(), label.begin() + count, added) == label.begin() + count)
            label[static_cast<std::size_t>(count++)] = added;
    }
    std::uint16_t operator[](int i) const {
        return label[static_cast<std::size_t>(i)];
    }
};

/// Which palette colour a pixel in a plain area has: exactly or, with noise, the nearest within it.
class KnownColors {
public:
    KnownColors(const std::vector<QRgb>& palette, int noise) : palette(palette), noise(noise) {
        for (const QRgb color : palette)
            places.add(color);
    }
    std::uint16_t labelOf(QRgb color) const {
        const std::size_t found = places.find(color);
        if (found < palette.size())
            return static_cast<std::uint16_t>(found);
        return noise > 0 ? nearest(color) : UnknownLabel;
    }

private:
    std::uint16_t nearest(QRgb color) const {
        std::uint16_t best = UnknownLabel;
        int least = noise;
        for (std::size_t k = 0; k < palette.size(); ++k) {
            const int apart = farthestChannel(color, palette[k]);
            if (apart > least || (apart == least && best != UnknownLabel))
                continue;
            least = apart;
            best = static_cast<std::uint16_t>(k);
        }
        return best;
    }

    const std::vector<QRgb>& palette;
    int noise;
    ColorCounts places;
};

class PixelLabeller {
public:
    PixelLabeller(const PixelView& image, std::vector<QRgb> palette, const MixOptions& options)
        : image(image), options(options) {
        labels.width = image.width;
        labels.height = image.height;
        labels.noise = options.noise;
        labels.light = options.light;
        labels.palette = std::move(palette);
        labels.labels.resize(static_cast<std::size_t>(image.width) *
                             static_cast<std::size_t>(image.height));
    }

    LabelImage run() {
        for (const QRgb color : labels.palette)
            colors.push_back(mixColor(color, options.light));
        labelKnown();
        for (Mix& mix : mixes)
            explain(mix);
        if (lonely.size() < labels.labels.size() / 2)
            explainWide();
        explainLonely();
        if (options.mayAddColors)
            addLineColors();
        labels.plainColors = labels.palette.size();
        labels.strangePixels = lonely.size();
        labelStrange();
        for (const Mix& mix : mixes)
            labels.row(mix.y)[mix.x] = mix.label();
        keepLines();
        return std::move(labels);
    }

private:
    void labelKnown() {
        const KnownColors known(labels.palette, options.noise);
        for (int y = 0; y < image.height; ++y) {
            const QRgb* row = image.row(y);
            std::uint16_t* out = labels.row(y);
            for (int x = 0; x < image.width; ++x)
                out[x] = x > 0 && row[x] == row[x - 1] ? out[x - 1] : known.labelOf(row[x]);
        }
        if (options.noise > 0)
            forgetLoneOnes();
        else if (options.hasMixes)
            forgetLikelyMixes();
        for (int y = 0; y < image.height; ++y) {
            const std::uint16_t* row = labels.row(y);
            for (int x = 0; x < image.width; ++x) {
                if (row[x] == UnknownLabel)
                    mixes.push_back({x, y});
            }
        }
    }
    /// A mix may be near to a third colour by chance, but hardly a block of them.
    void forgetLoneOnes() {
        std::vector<std::uint16_t> kept(labels.labels.size(), UnknownLabel);
        const auto width = static_cast<std::size_t>(labels.width);
        for (int y = 0; y + 1 < labels.height; ++y) {
            const std::uint16_t* row = labels.row(y);
            std::uint16_t* out = kept.data() + static_cast<std::size_t>(y) * width;
            for (std::size_t x = 0; x + 1 < width; ++x) {
                const std::uint16_t label = row[x];
                if (label == row[x + 1] && label == row[x + width] && label == row[x + width + 1])
                    out[x] = out[x + 1] = out[x + width] = out[x + width + 1] = label;
            }
        }
        labels.labels = std::move(kept);
    }

    /// A mix may be a third colour to the last bit, by chance: where it is no block of it, and lies
    /// between two colours that it is a mix of.
    void forgetLikelyMixes() {
        std::vector<std::size_t> forgotten;
        for (int y = 0; y < labels.height; ++y) {
            for (int x = 0; x < labels.width; ++x) {
                const std::uint16_t label = labels.at(x, y);
                if (label != UnknownLabel && !isInBlock(x, y, label) &&
                    isBetweenOthers(x, y, label))
                    forgotten.push_back(static_cast<std::size_t>(y) *
                                            static_cast<std::size_t>(labels.width) +
                                        static_cast<std::size_t>(x));
            }
        }
        for (const std::size_t place : forgotten)
            labels.labels[place] = UnknownLabel;
    }
    bool isInBlock(int x, int y, std::uint16_t label) const {
        for (const int dy : {1, -1}) {
            for (const int dx : {1, -1}) {
                if (labelAt(x + dx, y) == label && labelAt(x, y + dy) == label &&
                    labelAt(x + dx, y + dy) == label)
                    return true;
            }
        }
        return false;
    }
    bool isBetweenOthers(int x, int y, std::uint16_t label) const {
        constexpr std::array<PixelOffset, 4> ways{{{1, 0}, {0, 1}, {1, 1}, {1, -1}}};
        return std::any_of(ways.begin(), ways.end(), [&](PixelOffset way) {
            const std::uint16_t before = knownBeside(x, y, -way.x, -way.y);
            const std::uint16_t behind = knownBeside(x, y, way.x, way.y);
            return before != UnknownLabel && behind != UnknownLabel && before != behind &&
                   before != label && behind != label &&
                   axis(before, behind).residual(colors[label]) <= options.tolerance;
        });
    }
    /// The next pixel's label on this way, or that behind it when it is a mix itself.
    std::uint16_t knownBeside(int x, int y, int dx, int dy) const {
        const std::uint16_t next = labelAt(x + dx, y + dy);
        return next != UnknownLabel ? next : labelAt(x + 2 * dx, y + 2 * dy);
    }

    std::uint16_t labelAt(int x, int y) const {
        if (x < 0 || y < 0 || x >= image.width || y >= image.height)
            return UnknownLabel;
        return labels.at(x, y);
    }
    Neighbours neighboursOf(int x, int y) const {
        Neighbours found;
        for (const PixelOffset offset : Around)
            found.add(labelAt(x + offset.x, y + offset.y));
        return found;
    }

    MixColor mixAt(int x, int y) const {
        return mixColor(image.at(x, y), options.light);
    }
    ColorAxis axis(std::uint16_t a, std::uint16_t b) const {
        return {labels.palette[a], labels.palette[b], options.light};
    }
    ColorTriangle triangle(const std::array<std::uint16_t, 3>& of) const {
        return {colors[of[0]], colors[of[1]], colors[of[2]], options.light};
    }

    /// Two colours around the mix, of those that explain it the nearest.
    void explain(Mix& mix) {
        if (!explainBy(mix, neighboursOf(mix.x, mix.y)))
            lonely.push_back(static_cast<std::size_t>(&mix - mixes.data()));
    }
    bool explainBy(Mix& mix, const Neighbours& around) {
        const MixColor color = mixAt(mix.x, mix.y);
        double best = options.tolerance;
        for (int j = 1; j < around.count; ++j) {
            for (int i = 0; i < j; ++i) {
                const ColorAxis way = axis(around[i], around[j]);
                const double residual = way.residual(color, options.overshoot);
                // Farther colours must explain it clearly better.
                if (residual > best || (mix.b != UnknownLabel && residual * 2.0 > best))
                    continue;
                best = residual;
                mix.a = around[i];
                mix.b = around[j];
                mix.t = static_cast<float>(std::clamp(way.rawPosition(color), 0.0, 1.0));
            }
        }
        if (mix.b == UnknownLabel && around.count >= 3)
            explainByThree(mix, color, around);
        return mix.b != UnknownLabel;
    }

    /// In the middle of wide edges the colours on both sides are farther away.
    void explainWide() {
        std::erase_if(lonely, [this](std::size_t i) {
            return explainBy(mixes[i], wideNeighboursOf(mixes[i].x, mixes[i].y));
        });
    }
    /// The first known pixels in eight directions, the nearest first.
    Neighbours wideNeighboursOf(int x, int y) const {
        constexpr int Widest = 8;
        Neighbours found;
        std::array<bool, 8> ended{};
        for (int step = 1; step <= Widest; ++step) {
            for (std::size_t i = 0; i < 8; ++i) {
                const std::uint16_t label =
                    ended[i] ? UnknownLabel
                             : labelAt(x + step * Around[i].x, y + step * Around[i].y);
                ended[i] = ended[i] || label != UnknownLabel;
                found.add(label);
            }
        }
        return found;
    }

    /// Three colours around the mix; the two that have the largest shares are kept.
    void explainByThree(Mix& mix, const MixColor& color, const Neighbours& around) {
        double best = options.tolerance;
        for (int k = 2; k < around.count; ++k) {
            for (int j = 1; j < k; ++j) {
                for (int i = 0; i < j; ++i) {
                    const std::array three{around[i], around[j], around[k]};
                    const auto shares = sharesOf(color, triangle(three), best);
                    if (shares)
                        keepLargest(mix, three, *shares);
                }
            }
        }
    }
    using Shares = std::array<double, 3>;
    /// The shares of three colours in a mix if they are all positive and explain it better than
    /// `best`, which is set then.
    static std::optional<Shares> sharesOf(const MixColor& color, const ColorTriangle& triangle,
                                          double& best) {
        if (triangle.isFlat())
            return std::nullopt;
        const Shares shares = triangle.sharesOf(color);
        constexpr double Slack = 0.02;
        if (shares[1] < -Slack || shares[2] < -Slack || shares[1] + shares[2] > 1.0 + Slack)
            return std::nullopt;
        const double residual = triangle.residual(color, shares);
        if (residual >= best)
            return std::nullopt;
        best = residual;
        return shares;
    }
    static void keepLargest(Mix& mix, const std::array<std::uint16_t, 3>& three, const Shares& of) {
        std::array<std::size_t, 3> order{0, 1, 2};
        std::stable_sort(order.begin(), order.end(),
                         [&](std::size_t i, std::size_t j) { return of[i] > of[j]; });
        mix.a = three[order[0]];
        mix.b = three[order[1]];
        const double sum = of[order[0]] + of[order[1]];
        mix.t = static_cast<float>(sum > 0.0 ? of[order[1]] / sum : 0.0);
    }

    /// What no colours nearby explain: lines that are nowhere covered whole, of a colour that lies
    /// elsewhere in the image or nowhere.
    void explainLonely() {
        std::erase_if(lonely, [this](std::size_t i) { return explainByFar(mixes[i]); });
    }

    /// Whether nine tenths of what is not explained lie beside known colours: lines do, and small
    /// letters, not what is drawn in shades.
    bool areBesideGrounds() const {
        constexpr std::size_t MostLooked = 4096;
        const std::size_t stride = lonely.size() / MostLooked + 1;
        std::size_t looked = 0;
        std::size_t beside = 0;
        for (std::size_t i = 0; i < lonely.size(); i += stride, ++looked)
            beside += std::size_t(groundsOf(mixes[lonely[i]]).count > 0);
        return beside * 10 >= looked * 9;
    }
    /// Adds the colours of lines that are nowhere covered whole: those ridges that explain most of
    /// what is not explained.
    void addLineColors() {
        // Where most pixels are strange they are no lines but a photograph.
        constexpr std::size_t MostTried = 1024;
        constexpr int FewestPixels = 3;
        const std::size_t most = options.noise > 0 || areBesideGrounds() ? 2 : 8;
        if (lonely.size() > labels.labels.size() / most)
            return;
        constexpr int MostAdded = 16;
        std::vector<QRgb> refused;
        for (int added = 0;
             added < MostAdded && labels.palette.size() < options.mostColors && !lonely.empty();
             ++added) {
            const std::size_t stride = lonely.size() / MostTried + 1;
            ColorCounts ridges;
            for (std::size_t i = 0; i < lonely.size(); i += stride) {
                const Mix& mix = mixes[lonely[i]];
                const Neighbours around = groundsOf(mix);
                if (around.count > 0)
                    ridges.add(ridgeAround(mix, around[0]));
            }
            QRgb best = 0;
            const int explained = bestRidge(ridges, refused, stride, best);
            if (explained < FewestPixels)
                return;
            const std::size_t before = lonely.size();
            labels.palette.push_back(best);
            colors.push_back(mixColor(best, options.light));
            explainLonely();
            if (lonely.size() == before) {
                refused.push_back(best);
                labels.palette.pop_back();
                colors.pop_back();
            }
        }
    }
    /// Whether a colour lies between two that are there already.
    bool isMixOfPalette(QRgb color) const {
        const MixColor mix = mixColor(color, options.light);
        for (std::uint16_t b = 1; b < labels.palette.size(); ++b) {
            for (std::uint16_t a = 0; a < b; ++a) {
                if (axis(a, b).residual(mix) <= options.tolerance)
                    return true;
            }
        }
        return false;
    }
    /// How many strange pixels the ridge explains that explains most, which `best` is set to.
    /// Those `refused` have explained none when they were tried.
    int bestRidge(const ColorCounts& ridges, const std::vector<QRgb>& refused, std::size_t stride,
                  QRgb& best) const {
        constexpr std::size_t MostRidges = 64;
        std::vector<ColorCounts::Entry> order = ridges.entries();
        std::stable_sort(order.begin(), order.end(),
                         [](const auto& a, const auto& b) { return a.count > b.count; });
        order.resize(std::min(order.size(), MostRidges));
        int most = 0;
        for (const ColorCounts::Entry& entry : order) {
            if (std::find(refused.begin(), refused.end(), entry.color) != refused.end() ||
                isMixOfPalette(entry.color))
                continue;
            int explained = 0;
            for (std::size_t i = 0; i < lonely.size(); i += stride) {
                const Mix& mix = mixes[lonely[i]];
                const Neighbours around = groundsOf(mix);
                if (around.count == 0)
                    continue;
                const ColorAxis way(labels.palette[around[0]], entry.color, options.light);
                const MixColor color = mixAt(mix.x, mix.y);
                explained += int(way.residual(color, options.overshoot) <= options.tolerance);
            }
            if (explained > most) {
                most = explained;
                best = entry.color;
            }
        }
        return most;
    }

    /// Gives what is not explained the nearest colour, of groups of similar ones where it is much.
    void labelStrange() {
        // Stray pixels are not worth a colour.
        constexpr std::size_t Stray = 200;
        if (options.mayAddColors && options.noise == 0 &&
            lonely.size() > labels.labels.size() / Stray &&
            labels.palette.size() < options.mostColors)
            addGroups();
        for (const std::size_t i : lonely) {
            Mix& mix = mixes[i];
            mix.a = mix.b = options.noise > 0 ? nearestAround(mix) : nearest(mixAt(mix.x, mix.y));
        }
    }
    /// Noise is a disturbance of the colours nearby.
    std::uint16_t nearestAround(const Mix& mix) const {
        const MixColor color = mixAt(mix.x, mix.y);
        const Neighbours around = wideNeighboursOf(mix.x, mix.y);
        std::uint16_t best = around.count > 0 ? around[0] : nearest(color);
        for (int i = 1; i < around.count; ++i) {
            if (distance(color, colors[around[i]]) < distance(color, colors[best]))
                best = around[i];
        }
        return best;
    }
    void addGroups() {
        // Colours that differ in the last three bits of the channels are counted as one.
        constexpr QRgb Coarse = 0xf8f8f8f8U;
        constexpr QRgb Middle = 0x04040404U;
        ColorCounts counts;
        for (const std::size_t i : lonely) {
            const QRgb color = image.at(mixes[i].x, mixes[i].y);
            const QRgb alpha = color >> 24 >= 0xf8U ? 0xff000000U : 0U;
            counts.add((color & Coarse) | Middle | alpha);
        }
        for (const QRgb color : clusterColors(counts, options.mostColors - labels.palette.size())) {
            labels.palette.push_back(color);
            colors.push_back(mixColor(color, options.light));
        }
    }

    /// The colour in the neighbourhood that is the farthest from `from`: a line's ridge.
    QRgb ridgeAround(const Mix& mix, std::uint16_t from) const {
        QRgb ridge = image.at(mix.x, mix.y);
        double farthest = distance(mixColor(ridge, options.light), colors[from]);
        for (const PixelOffset offset : Around) {
            const int x = mix.x + offset.x;
            const int y = mix.y + offset.y;
            if (x < 0 || y < 0 || x >= image.width || y >= image.height ||
                labels.at(x, y) != UnknownLabel)
                continue;
            const double apart = distance(mixAt(x, y), colors[from]);
            if (apart > farthest) {
                farthest = apart;
                ridge = image.at(x, y);
            }
        }
        return ridge;
    }
    static double distance(const MixColor& a, const MixColor& b) {
        double sum = 0.0;
        for (std::size_t i = 0; i < 4; ++i)
            sum += (a[i] - b[i]) * (a[i] - b[i]);
        return sum;
    }

    /// The known colours near by, or farther away where edges are wide.
    Neighbours groundsOf(const Mix& mix) const {
        const Neighbours near = neighboursOf(mix.x, mix.y);
        return near.count > 0 || options.noise == 0 ? near : wideNeighboursOf(mix.x, mix.y);
    }
    bool explainByFar(Mix& mix) const {
        const MixColor color = mixAt(mix.x, mix.y);
        const Neighbours around = groundsOf(mix);
        for (int i = 0; i < around.count && mix.b == UnknownLabel; ++i)
            explainFrom(mix, color, around[i]);
        if (mix.b != UnknownLabel)
            return true;
        // Of more colours the nearest ones: what is farther away is seldom beside a line.
        constexpr int Nearest = 3;
        const int count = std::min(around.count, Nearest);
        Reach best;
        for (int j = 1; j < count; ++j) {
            for (int i = 0; i < j; ++i)
                explainBetween(mix, color, {around[i], around[j]}, best);
        }
        return mix.b != UnknownLabel;
    }
    /// What three colours explain around a place.
    struct Reach {
        int explained = 0; ///< mixes
        double most = 0.0; ///< the largest share of the third colour in them
    };
    /// A line between two grounds, of a colour that explains more of the mixes around this one than
    /// `best`, or as many if they come nearer to it; `best` is set then.
    void explainBetween(Mix& mix, const MixColor& color,
                        const std::array<std::uint16_t, 2>& grounds, Reach& best) const {
        for (std::size_t k = 0; k < colors.size(); ++k) {
            const auto line = static_cast<std::uint16_t>(k);
            if (line == grounds[0] || line == grounds[1])
                continue;
            const std::array three{grounds[0], grounds[1], line};
            const ColorTriangle way = triangle(three);
            double tolerance = options.tolerance;
            const auto shares = sharesOf(color, way, tolerance);
            if (!shares)
                continue;
            const Reach reach = reachAround(mix, way);
            if (reach.explained < best.explained ||
                (reach.explained == best.explained && reach.most <= best.most))
                continue;
            best = reach;
            const std::size_t ground = (*shares)[0] >= (*shares)[1] ? 0 : 1;
            mix.a = grounds[ground];
            mix.b = line;
            mix.t = static_cast<float>(std::clamp((*shares)[2], 0.0, 1.0));
        }
    }
    Reach reachAround(const Mix& mix, const ColorTriangle& way) const {
        Reach reach;
        for (int y = std::max(mix.y - 1, 0); y <= std::min(mix.y + 1, image.height - 1); ++y) {
            for (int x = std::max(mix.x - 1, 0); x <= std::min(mix.x + 1, image.width - 1); ++x) {
                double tolerance = options.tolerance;
                if (labels.at(x, y) != UnknownLabel)
                    continue;
                const auto shares = sharesOf(mixAt(x, y), way, tolerance);
                if (!shares)
                    continue;
                ++reach.explained;
                reach.most = std::max(reach.most, (*shares)[2]);
            }
        }
        return reach;
    }
    void explainFrom(Mix& mix, const MixColor& color, std::uint16_t from) const {
        const MixColor ridge = mixColor(ridgeAround(mix, from), options.light);
        double bestReach = 0.0;
        for (std::size_t k = 0; k < colors.size(); ++k) {
            const auto to = static_cast<std::uint16_t>(k);
            if (to == from)
                continue;
            const ColorAxis way = axis(from, to);
            if (way.residual(color) > options.tolerance || way.residual(ridge) > options.tolerance)
                continue;
            // Of the colours on this way that the ridge does not exceed, the nearest.
            const double reach = way.rawPosition(ridge);
            if (reach <= bestReach)
                continue;
            bestReach = reach;
            mix.a = from;
            mix.b = to;
            mix.t = static_cast<float>(std::clamp(way.rawPosition(color), 0.0, 1.0));
        }
    }
    std::uint16_t nearest(const MixColor& color) const {
        std::size_t best = 0;
        for (std::size_t k = 1; k < colors.size(); ++k) {
            if (distance(color, colors[k]) < distance(color, colors[best]))
                best = k;
        }
        return static_cast<std::uint16_t>(best);
    }

    void keepLines() {
        const LineLabels lines(image, options, labels.palette);
        std::vector<std::uint16_t> kept(mixes.size());
        for (std::size_t i = 0; i < mixes.size(); ++i)
            kept[i] = lines.labelOf(mixes[i]);
        for (std::size_t i = 0; i < mixes.size(); ++i)
            labels.row(mixes[i].y)[mixes[i].x] = kept[i];
    }
    const PixelView& image;
    const MixOptions& options;
    LabelImage labels;
    std::vector<MixColor> colors; ///< of the palette
    std::vector<Mix> mixes;
    std::vector<std::size_t> lonely; ///< among mixes
};

} // namespace

LabelImage labelPixels(const PixelView& image, std::vector<QRgb> palette,
                       const MixOptions& options) {
    return PixelLabeller(image, std::move(palette), options).run();
}

} // namespace ovtrace
