#include "regiongrid.h"

#include "saddles.h"

#include <algorithm>

namespace ovtrace {
namespace {

/// Pixels of one label beside each other in a row.
struct Run {
    int begin;
    int end;
    std::uint16_t label;
    std::uint32_t parent; ///< an earlier run of the same area, or itself
};

class RunJoiner {
public:
    RunJoiner(const PixelView& image, const LabelImage& labels) : image(image), labels(labels) {
        grid.width = labels.width;
        grid.height = labels.height;
    }

    RegionGrid run() {
        rowStarts.reserve(static_cast<std::size_t>(labels.height) + 1);
        for (int y = 0; y < labels.height; ++y) {
            appendRuns(y);
            if (y > 0)
                joinRows(y);
        }
        rowStarts.push_back(runs.size());
        number();
        return std::move(grid);
    }

private:
    void appendRuns(int y) {
        rowStarts.push_back(runs.size());
        const std::uint16_t* row = labels.row(y);
        for (int x = 0; x < labels.width;) {
            const int begin = x;
            const std::uint16_t label = row[x];
            while (x < labels.width && row[x] == label)
                ++x;
            runs.push_back({begin, x, label, static_cast<std::uint32_t>(runs.size())});
        }
    }

    void joinRows(int y) {
        std::size_t above = rowStarts[rowStarts.size() - 2];
        std::size_t below = rowStarts.back();
        const std::size_t aboveEnd = below;
        while (above < aboveEnd && below < runs.size()) {
            const Run& a = runs[above];
            const Run& b = runs[below];
            if (a.label == b.label && a.begin < b.end && b.begin < a.end)
                join(above, below);
            const int corner = std::min(a.end, b.end);
            if (a.end == b.end) {
                if (corner < labels.width)
                    joinAcross(corner, y, above, below);
                ++above;
                ++below;
            } else if (a.end < b.end) {
                ++above;
            } else {
                ++below;
            }
        }
    }

    /// Four runs meet at the corner: `above` and `below` end there, and those after them begin.
    void joinAcross(int x, int y, std::size_t above, std::size_t below) {
        const bool falling = runs[above].label == runs[below + 1].label;
        const bool rising = runs[below].label == runs[above + 1].label;
        if (falling && rising) {
            if (joinsFalling(image, labels, x, y)) {
                join(above, below + 1);
                return;
            }
            grid.risingJoins.push_back(static_cast<std::uint64_t>(y) *
                                           (static_cast<std::uint64_t>(labels.width) + 1) +
                                       static_cast<std::uint64_t>(x));
            join(above + 1, below);
        } else if (falling) {
            join(above, below + 1);
        } else if (rising) {
            join(above + 1, below);
        }
    }

    std::uint32_t root(std::size_t run) {
        auto r = static_cast<std::uint32_t>(run);
        while (runs[r].parent != r) {
            runs[r].parent = runs[runs[r].parent].parent;
            r = runs[r].parent;
        }
        return r;
    }
    void join(std::size_t a, std::size_t b) {
        const std::uint32_t first = root(a);
        const std::uint32_t second = root(b);
        // The earlier run leads, so that areas are numbered by their first pixels.
        runs[std::max(first, second)].parent = std::min(first, second);
    }

    void number() {
        grid.ids.resize(labels.labels.size());
        std::vector<std::int32_t> idOf(runs.size(), RegionGrid::Outside);
        for (int y = 0; y < labels.height; ++y) {
            std::int32_t* row = grid.ids.data() + static_cast<std::size_t>(y) *
                                                      static_cast<std::size_t>(labels.width);
            for (std::size_t i = rowStarts[static_cast<std::size_t>(y)];
                 i < rowStarts[static_cast<std::size_t>(y) + 1]; ++i)
                std::fill(row + runs[i].begin, row + runs[i].end, idOfRun(i, idOf));
        }
    }
    std::int32_t idOfRun(std::size_t i, std::vector<std::int32_t>& idOf) {
        const Run& run = runs[i];
        if (qAlpha(labels.palette[run.label]) == 0)
            return RegionGrid::Outside;
        const std::uint32_t first = root(i);
        if (first == i) {
            idOf[i] = static_cast<std::int32_t>(grid.labels.size());
            grid.labels.push_back(run.label);
            grid.pixelCount.push_back(0);
        }
        const std::int32_t id = idOf[first];
        grid.pixelCount[static_cast<std::size_t>(id)] +=
            static_cast<std::uint32_t>(run.end - run.begin);
        return id;
    }

    const PixelView& image;
    const LabelImage& labels;
    RegionGrid grid;
    std::vector<Run> runs;
    std::vector<std::size_t> rowStarts;
};

} // namespace

RegionGrid findRegions(const PixelView& image, const LabelImage& labels) {
    return RunJoiner(image, labels).run();
}

} // namespace ovtrace
