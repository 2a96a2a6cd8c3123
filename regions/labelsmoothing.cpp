#include "labelsmoothing.h"

#include "mixing.h"

#include <array>

namespace ovtrace {
namespace {

class LabelSmoother {
public:
    LabelSmoother(const PixelView& image, LabelImage& labels) : image(image), labels(labels) {
        for (const QRgb color : labels.palette)
            colors.push_back(mixColor(color));
    }

    void sweep() {
        for (int y = 1; y + 1 < labels.height; ++y) {
            for (int x = 1; x + 1 < labels.width; ++x) {
                if (isInner(x, y) || qAlpha(labels.palette[labels.at(x, y)]) == 0)
                    continue;
                labels.row(y)[x] = best(x, y);
            }
        }
    }

private:
    static constexpr std::size_t Around = 8;

    bool isInner(int x, int y) const {
        const std::uint16_t own = labels.at(x, y);
        return labels.at(x - 1, y) == own && labels.at(x + 1, y) == own &&
               labels.at(x, y - 1) == own && labels.at(x, y + 1) == own;
    }
    std::array<std::uint16_t, Around> around(int x, int y) const {
        return {labels.at(x, y - 1),     labels.at(x - 1, y),     labels.at(x + 1, y),
                labels.at(x, y + 1),     labels.at(x - 1, y - 1), labels.at(x + 1, y - 1),
                labels.at(x - 1, y + 1), labels.at(x + 1, y + 1)};
    }
    std::uint16_t best(int x, int y) const {
        const std::array<std::uint16_t, Around> near = around(x, y);
        const MixColor color = mixColor(image.at(x, y));
        std::uint16_t chosen = labels.at(x, y);
        double least = cost(color, chosen, near);
        for (const std::uint16_t label : near) {
            if (label == chosen || qAlpha(labels.palette[label]) == 0)
                continue;
            const double found = cost(color, label, near);
            if (found < least) {
                least = found;
                chosen = label;
            }
        }
        return chosen;
    }
    double cost(const MixColor& color, std::uint16_t label,
                const std::array<std::uint16_t, Around>& near) const {
        // Squared steps of the channels that a neighbour weighs: noise of about 8 steps is evened.
        constexpr double Weight = 30.0;
        double sum = 0.0;
        for (std::size_t i = 0; i < 4; ++i)
            sum += (color[i] - colors[label][i]) * (color[i] - colors[label][i]);
        for (const std::uint16_t other : near)
            sum += other == label ? 0.0 : Weight;
        return sum;
    }

    const PixelView& image;
    LabelImage& labels;
    std::vector<MixColor> colors;
};

} // namespace

void smoothLabels(const PixelView& image, LabelImage& labels) {
    LabelSmoother smoother(image, labels);
    // Rims move by a pixel in each; more change little.
    constexpr int Sweeps = 4;
    for (int i = 0; i < Sweeps; ++i)
        smoother.sweep();
}

} // namespace ovtrace
