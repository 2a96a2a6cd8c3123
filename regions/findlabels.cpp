#include "findlabels.h"

#include "clusters.h"
#include "gridlines.h"
#include "labelsmoothing.h"
#include "lightevidence.h"
#include "mixlabels.h"
#include "plateaus.h"
#include "purecolors.h"
#include "similarareas.h"

#include <algorithm>
#include <utility>

namespace ovtrace {
namespace {

class LabelFinder {
public:
    LabelFinder(const PixelView& image, const RegionOptions& settings)
        : image(image), settings(settings) {
        mixing.mostColors = settings.mostColors;
        mixing.hasMixes = !settings.exactPixels;
    }

    LabelImage byGiven(std::vector<QRgb> colors) {
        mixing.mayAddColors = false;
        if (!isExact()) {
            setLight();
            setNoise(findPlateaus(image, MostPlateaus).noise);
        }
        return labelPixels(image, std::move(colors), mixing);
    }
    LabelImage byFound() {
        if (isExact())
            return labelled(
                leadingColors(countColors(image, settings.mostColors * 4), settings.mostColors));
        const Plateaus plateaus = findPlateaus(image, MostPlateaus);
        if (plateaus.isSmooth)
            return similarAreas();
        setLight();
        if (plateaus.noise == 0)
            return labelled(leadingColors(plainColors(), settings.mostColors));
        setNoise(plateaus.noise);
        std::vector<QRgb> colors = plateaus.colors;
        colors.resize(std::min(colors.size(), settings.mostColors));
        LabelImage labels = labelled(std::move(colors));
        // What plain colours explain so little is no drawing.
        constexpr std::size_t MostStrange = 10;
        if (labels.strangePixels > labels.labels.size() / MostStrange)
            return similarAreas();
        return labels;
    }

private:
    /// More plain colours are a sign of gradients.
    static constexpr std::size_t MostPlateaus = 128;

    /// Pixels that are drawn one by one, and those of two colours, are never mixes.
    bool isExact() const {
        constexpr std::size_t Two = 2;
        return settings.exactPixels || countColors(image, Two).entries().size() <= Two;
    }
    void setLight() {
        mixing.light = settings.light ? *settings.light : lightOfEdges(image);
    }
    void setNoise(int noise) {
        if (noise == 0)
            return;
        // Chroma is stored more coarsely than lightness, and scaling sharpens edges.
        mixing.noise = noise;
        constexpr double Coarse = 24.0;
        mixing.tolerance = std::max(Coarse, 2.0 * noise);
        mixing.overshoot = 0.2;
    }
    ColorCounts plainColors() const {
        ColorCounts colors = withoutMixes(image, findPureColors(image).blocks, mixing.light);
        const ColorCounts lines = findLineColors(image);
        for (const ColorCounts::Entry& line : lines.entries())
            colors.add(line.color, line.count);
        return colors;
    }
    LabelImage labelled(std::vector<QRgb> colors) const {
        if (colors.empty())
            colors.push_back(image.at(0, 0));
        return labelPixels(image, std::move(colors), mixing);
    }

    LabelImage similarAreas() const {
        AreaOptions areas;
        areas.mostColors = settings.mostColors;
        LabelImage labels = labelSimilarAreas(image, areas);
        smoothLabels(image, labels);
        return labels;
    }

    const PixelView& image;
    const RegionOptions& settings;
    MixOptions mixing;
};

} // namespace

LabelImage findLabels(const PixelView& image, const std::vector<QRgb>& given,
                      const RegionOptions& settings) {
    LabelFinder finder(image, settings);
    return given.empty() ? finder.byFound() : finder.byGiven(given);
}

} // namespace ovtrace
