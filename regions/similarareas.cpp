#include "similarareas.h"

#include "clusters.h"
#include "colorcounts.h"
#include "mixing.h"

#include <algorithm>
#include <limits>
#include <numeric>
#include <span>

namespace ovtrace {
namespace {

/// Four channels, multiplied by the opacity, in floats: images have many.
struct FloatColor {
    float channel[4] = {0.0F, 0.0F, 0.0F, 0.0F};
};

FloatColor floatColor(QRgb color) {
    const MixColor mix = mixColor(color);
    FloatColor result;
    for (std::size_t i = 0; i < 4; ++i)
        result.channel[i] = static_cast<float>(mix[i]);
    return result;
}

/// The pixels of an area: their number, and the sum of their colours.
struct Area {
    FloatColor sum;
    float count = 0.0F;
    std::uint32_t parent = 0; ///< the area that it has become part of, or itself

    void add(const FloatColor& color) {
        for (std::size_t i = 0; i < 4; ++i)
            sum.channel[i] += color.channel[i];
        count += 1.0F;
    }
    void add(const Area& other) {
        for (std::size_t i = 0; i < 4; ++i)
            sum.channel[i] += other.sum.channel[i];
        count += other.count;
    }
    FloatColor mean() const {
        FloatColor result;
        for (std::size_t i = 0; i < 4; ++i)
            result.channel[i] = sum.channel[i] / count;
        return result;
    }
};

float squaredDistance(const FloatColor& a, const FloatColor& b) {
    float result = 0.0F;
    for (std::size_t i = 0; i < 4; ++i) {
        const float apart = a.channel[i] - b.channel[i];
        result += apart * apart;
    }
    return result;
}

/// Where two areas touch, the smaller number first.
struct Contact {
    std::uint32_t a;
    std::uint32_t b;
    float length; ///< edges between pixels
};

class AreaMerger {
public:
    AreaMerger(const PixelView& image, const AreaOptions& options)
        : image(image), options(options) {
    }

    LabelImage run() {
        findRuns();
        joinRuns();
        renumber();
        findContacts();
        merge();
        return labelled();
    }

private:
    /// Pixels beside each other in a row.
    struct Run {
        std::int32_t begin;
        std::int32_t end;
        std::uint32_t area;
    };

    /// Squared steps within which pixels are put together first, beside each other.
    static constexpr float Alike = 12.0F;

    void findRuns() {
        for (int y = 0; y < image.height; ++y) {
            rowStarts.push_back(runs.size());
            const QRgb* row = image.row(y);
            for (int x = 0; x < image.width;) {
                const int begin = x;
                Area area;
                area.parent = static_cast<std::uint32_t>(areas.size());
                area.add(floatColor(row[x++]));
                while (x < image.width && isAlike(area, floatColor(row[x])))
                    area.add(floatColor(row[x++]));
                runs.push_back({begin, x, area.parent});
                areas.push_back(area);
            }
        }
        rowStarts.push_back(runs.size());
        areaCount = areas.size();
    }
    static bool isAlike(const Area& area, const FloatColor& color) {
        return squaredDistance(area.mean(), color) <= Alike;
    }

    /// Calls visit(above, below, overlap) for runs of neighbouring rows that touch.
    template <typename Visit> void forEachOverlap(const Visit& visit) {
        for (std::size_t y = 1; y < static_cast<std::size_t>(image.height); ++y) {
            std::size_t above = rowStarts[y - 1];
            std::size_t below = rowStarts[y];
            while (above < rowStarts[y] && below < rowStarts[y + 1]) {
                const Run& a = runs[above];
                const Run& b = runs[below];
                visit(above, below, std::min(a.end, b.end) - std::max(a.begin, b.begin));
                const bool aboveEnds = a.end <= b.end;
                const bool belowEnds = b.end <= a.end;
                above += std::size_t(aboveEnds);
                below += std::size_t(belowEnds);
            }
        }
    }
    void joinRuns() {
        forEachOverlap([this](std::size_t above, std::size_t below, int) {
            const std::uint32_t a = root(runs[above].area);
            const std::uint32_t b = root(runs[below].area);
            if (a != b && squaredDistance(areas[a].mean(), areas[b].mean()) <= Alike)
                join(a, b);
        });
    }

    std::uint32_t root(std::uint32_t area) {
        while (areas[area].parent != area) {
            areas[area].parent = areas[areas[area].parent].parent;
            area = areas[area].parent;
        }
        return area;
    }
    void join(std::uint32_t a, std::uint32_t b) {
        const std::uint32_t first = std::min(a, b);
        const std::uint32_t second = std::max(a, b);
        areas[first].add(areas[second]);
        areas[second].parent = first;
        --areaCount;
    }

    void touch(std::uint32_t a, std::uint32_t b, float length) {
        if (a != b)
            contacts.push_back({std::min(a, b), std::max(a, b), length});
    }
    void findContacts() {
        for (std::size_t y = 0; y < static_cast<std::size_t>(image.height); ++y) {
            for (std::size_t i = rowStarts[y] + 1; i < rowStarts[y + 1]; ++i)
                touch(runs[i - 1].area, runs[i].area, 1.0F);
        }
        forEachOverlap([this](std::size_t above, std::size_t below, int length) {
            if (length > 0)
                touch(runs[above].area, runs[below].area, static_cast<float>(length));
        });
        combineContacts();
    }
    /// Sorts the contacts by their areas, and makes one of those between the same two.
    void combineContacts() {
        std::vector<std::size_t> begins(areas.size() + 1, 0);
        for (const Contact& contact : contacts)
            ++begins[contact.a + 1];
        std::partial_sum(begins.begin(), begins.end(), begins.begin());
        std::vector<std::size_t> ends(begins.begin(), begins.end() - 1);
        std::vector<Contact> sorted(contacts.size());
        for (const Contact& contact : contacts)
            sorted[ends[contact.a]++] = contact;
        contacts.clear();
        for (std::size_t area = 0; area < areas.size(); ++area)
            appendCombined(std::span(sorted).subspan(begins[area], ends[area] - begins[area]));
    }
    /// Of one area `a`.
    void appendCombined(std::span<Contact> ofArea) {
        std::sort(ofArea.begin(), ofArea.end(),
                  [](const Contact& one, const Contact& other) { return one.b < other.b; });
        for (std::size_t i = 0; i < ofArea.size(); ++i) {
            if (i > 0 && ofArea[i].b == ofArea[i - 1].b)
                contacts.back().length += ofArea[i].length;
            else
                contacts.push_back(ofArea[i]);
        }
    }

    /// What a boundary is worth a pixel of its length. Transparent and other areas stay apart.
    float worth(const Contact& contact) const {
        const Area& a = areas[contact.a];
        const Area& b = areas[contact.b];
        if ((a.sum.channel[3] == 0.0F) != (b.sum.channel[3] == 0.0F))
            return std::numeric_limits<float>::max();
        return a.count / (a.count + b.count) * b.count * squaredDistance(a.mean(), b.mean()) /
               contact.length;
    }
    void merge() {
        // Bounds that rise in small steps give nearly the order of a sorted list.
        constexpr float Step = 1.3F;
        constexpr float First = 4.0F;
        constexpr float Last = 1e6F; // more than black and white are worth
        const auto detail = static_cast<float>(options.detail);
        for (float bound = First; bound < Last && (bound < detail * Step || isCrowded());
             bound *= Step) {
            mergeBelow(bound < detail || isCrowded() ? bound : detail);
            bringUpToDate();
        }
    }
    bool isCrowded() const {
        return areaCount > options.mostAreas;
    }
    void mergeBelow(float bound) {
        for (Contact& contact : contacts) {
            contact.a = root(contact.a);
            contact.b = root(contact.b);
            if (contact.a != contact.b && worth(contact) < bound)
                join(contact.a, contact.b);
        }
    }
    void bringUpToDate() {
        for (Contact& contact : contacts) {
            const std::uint32_t a = root(contact.a);
            const std::uint32_t b = root(contact.b);
            contact.a = std::min(a, b);
            contact.b = std::max(a, b);
        }
        std::erase_if(contacts, [](const Contact& contact) { return contact.a == contact.b; });
        combineContacts();
        if (areaCount < areas.size() / 2)
            renumber();
    }
    /// Leaves out the areas that have become part of others: the rest is read all over again, and
    /// is nearer to hand so. Their order stays.
    void renumber() {
        std::vector<std::uint32_t> numbers(areas.size());
        std::uint32_t count = 0;
        for (std::uint32_t i = 0; i < areas.size(); ++i) {
            // Areas become part of earlier ones, which have their numbers.
            const bool isPart = areas[i].parent != i;
            numbers[i] = isPart ? numbers[areas[i].parent] : count;
            if (isPart)
                continue;
            areas[count] = areas[i];
            areas[count].parent = count;
            ++count;
        }
        areas.resize(count);
        for (Run& run : runs)
            run.area = numbers[run.area];
        for (Contact& contact : contacts) {
            contact.a = numbers[contact.a];
            contact.b = numbers[contact.b];
        }
    }

    static QRgb stored(const Area& area) {
        const FloatColor mean = area.mean();
        const auto rounded = [](float value) {
            return std::clamp(static_cast<int>(value + 0.5F), 0, 255);
        };
        const float alpha = mean.channel[3];
        if (!(alpha > 0.0F))
            return 0;
        const float factor = 255.0F / alpha;
        return qRgba(rounded(mean.channel[0] * factor), rounded(mean.channel[1] * factor),
                     rounded(mean.channel[2] * factor), std::max(rounded(alpha), 1));
    }
    LabelImage labelled() {
        LabelImage labels;
        labels.width = image.width;
        labels.height = image.height;
        labels.labels.resize(static_cast<std::size_t>(image.width) *
                             static_cast<std::size_t>(image.height));
        ColorCounts means;
        for (std::uint32_t i = 0; i < areas.size(); ++i) {
            if (areas[i].parent == i)
                means.add(stored(areas[i]), static_cast<std::uint32_t>(areas[i].count));
        }
        labels.palette = clusterColors(means, options.mostColors);
        const std::vector<std::uint16_t> labelOf = nearestColors(means, labels.palette);
        for (std::size_t y = 0; y < static_cast<std::size_t>(image.height); ++y) {
            std::uint16_t* row = labels.row(static_cast<int>(y));
            for (std::size_t i = rowStarts[y]; i < rowStarts[y + 1]; ++i) {
                const Area& area = areas[root(runs[i].area)];
                std::fill(row + runs[i].begin, row + runs[i].end,
                          labelOf[means.find(stored(area))]);
            }
        }
        return labels;
    }
    static std::vector<std::uint16_t> nearestColors(const ColorCounts& colors,
                                                    const std::vector<QRgb>& palette) {
        std::vector<FloatColor> places;
        for (const QRgb color : palette)
            places.push_back(floatColor(color));
        std::vector<std::uint16_t> nearest;
        for (const ColorCounts::Entry& entry : colors.entries()) {
            const FloatColor color = floatColor(entry.color);
            std::size_t best = 0;
            for (std::size_t k = 1; k < places.size(); ++k) {
                if (squaredDistance(color, places[k]) < squaredDistance(color, places[best]))
                    best = k;
            }
            nearest.push_back(static_cast<std::uint16_t>(best));
        }
        return nearest;
    }

    const PixelView& image;
    const AreaOptions& options;
    std::vector<Run> runs;
    std::vector<std::size_t> rowStarts;
    std::vector<Area> areas;
    std::size_t areaCount = 0;
    std::vector<Contact> contacts;
};

} // namespace

LabelImage labelSimilarAreas(const PixelView& image, const AreaOptions& options) {
    return AreaMerger(image, options).run();
}

} // namespace ovtrace
