#include "clusters.h"

#include "mixing.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace ovtrace {
namespace {

double squaredDistance(const MixColor& a, const MixColor& b) {
    double sum = 0.0;
    for (std::size_t i = 0; i < 4; ++i)
        sum += (a[i] - b[i]) * (a[i] - b[i]);
    return sum;
}

struct Weighted {
    MixColor color;
    double weight;
};

/// A group of colours: those from `begin` to `end` in a common list.
struct Group {
    std::size_t begin;
    std::size_t end;
    double spread = 0.0;     ///< weight times variance along the channel where it is largest
    std::size_t channel = 0; ///< that channel
};

class Clusters {
public:
    explicit Clusters(const ColorCounts& counts) {
        for (const ColorCounts::Entry& entry : counts.entries())
            colors.push_back({mixColor(entry.color), static_cast<double>(entry.count)});
    }

    std::vector<MixColor> run(std::size_t count) {
        std::vector<Group> groups{measured({0, colors.size()})};
        while (groups.size() < count) {
            const auto widest =
                std::max_element(groups.begin(), groups.end(), [](const Group& a, const Group& b) {
                    return a.spread < b.spread;
                });
            if (widest->spread <= 0.0)
                break;
            const auto [left, right] = divided(*widest);
            *widest = left;
            groups.push_back(right);
        }
        std::vector<MixColor> centres;
        centres.reserve(groups.size());
        for (const Group& group : groups)
            centres.push_back(meanOf(group));
        // A few rounds: the gain of later ones is lost in the rounding of the colours.
        constexpr int Rounds = 6;
        for (int round = 0; round < Rounds; ++round)
            settle(centres);
        return centres;
    }

private:
    MixColor meanOf(const Group& group) const {
        MixColor mean;
        double weight = 0.0;
        for (std::size_t k = group.begin; k < group.end; ++k) {
            for (std::size_t i = 0; i < 4; ++i)
                mean.channel[i] += colors[k].color[i] * colors[k].weight;
            weight += colors[k].weight;
        }
        for (double& channel : mean.channel)
            channel /= weight;
        return mean;
    }
    Group measured(Group group) const {
        const MixColor mean = meanOf(group);
        for (std::size_t i = 0; i < 4; ++i) {
            double spread = 0.0;
            for (std::size_t k = group.begin; k < group.end; ++k) {
                const double off = colors[k].color[i] - mean[i];
                spread += off * off * colors[k].weight;
            }
            if (spread > group.spread) {
                group.spread = spread;
                group.channel = i;
            }
        }
        return group;
    }
    /// At the mean of the channel that spreads most.
    std::pair<Group, Group> divided(const Group& group) {
        const double mean = meanOf(group)[group.channel];
        const auto middle = std::stable_partition(
            colors.begin() + static_cast<std::ptrdiff_t>(group.begin),
            colors.begin() + static_cast<std::ptrdiff_t>(group.end),
            [&](const Weighted& w) { return w.color[group.channel] <= mean; });
        auto at = static_cast<std::size_t>(middle - colors.begin());
        // Rounding may put all colours on one side.
        if (at == group.begin || at == group.end)
            at = (group.begin + group.end) / 2;
        return {measured({group.begin, at}), measured({at, group.end})};
    }
    void settle(std::vector<MixColor>& centres) const {
        std::vector<MixColor> sums(centres.size());
        std::vector<double> weights(centres.size(), 0.0);
        for (const Weighted& w : colors) {
            std::size_t best = 0;
            double least = std::numeric_limits<double>::max();
            for (std::size_t k = 0; k < centres.size(); ++k) {
                const double distance = squaredDistance(w.color, centres[k]);
                if (distance < least) {
                    least = distance;
                    best = k;
                }
            }
            for (std::size_t i = 0; i < 4; ++i)
                sums[best].channel[i] += w.color[i] * w.weight;
            weights[best] += w.weight;
        }
        for (std::size_t k = 0; k < centres.size(); ++k) {
            if (weights[k] == 0.0)
                continue;
            for (std::size_t i = 0; i < 4; ++i)
                centres[k].channel[i] = sums[k][i] / weights[k];
        }
    }

    std::vector<Weighted> colors;
};

QRgb stored(const MixColor& color) {
    const int alpha = static_cast<int>(std::lround(color[3]));
    if (alpha == 0)
        return 0;
    const auto channel = [&](std::size_t i) {
        return std::clamp(static_cast<int>(std::lround(color[i] * 255.0 / color[3])), 0, 255);
    };
    return qRgba(channel(0), channel(1), channel(2), alpha);
}

} // namespace

std::vector<QRgb> clusterColors(const ColorCounts& colors, std::size_t count) {
    std::vector<QRgb> found;
    if (colors.entries().empty() || count == 0)
        return found;
    for (const MixColor& centre : Clusters(colors).run(count)) {
        const QRgb color = stored(centre);
        if (std::find(found.begin(), found.end(), color) == found.end())
            found.push_back(color);
    }
    return found;
}

std::vector<QRgb> leadingColors(const ColorCounts& colors, std::size_t count) {
    std::vector<ColorCounts::Entry> order = colors.entries();
    std::stable_sort(order.begin(), order.end(),
                     [](const auto& a, const auto& b) { return a.count > b.count; });
    std::vector<QRgb> kept;
    for (double apart = 0.0;; apart = apart == 0.0 ? 2.0 : apart * 1.5) {
        kept.clear();
        for (const ColorCounts::Entry& entry : order) {
            const MixColor color = mixColor(entry.color);
            const bool near = std::any_of(kept.begin(), kept.end(), [&](QRgb other) {
                return squaredDistance(color, mixColor(other)) <= apart * apart;
            });
            if (!near)
                kept.push_back(entry.color);
            if (kept.size() > count)
                break;
        }
        if (kept.size() <= count)
            return kept;
    }
}

} // namespace ovtrace
