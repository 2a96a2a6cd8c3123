#include "inkmask.h"

#include "pace.h"

#include <algorithm>
#include <numeric>

namespace ovtrace {
namespace {

/// Sets of runs that are known to hang together; the root of each is its first run.
class RunSets {
public:
    void add() {
        parents.push_back(static_cast<std::uint32_t>(parents.size()));
    }
    std::uint32_t root(std::uint32_t run) {
        while (parents[run] != run) {
            parents[run] = parents[parents[run]];
            run = parents[run];
        }
        return run;
    }
    void join(std::uint32_t a, std::uint32_t b) {
        a = root(a);
        b = root(b);
        parents[std::max(a, b)] = std::min(a, b);
    }

private:
    std::vector<std::uint32_t> parents;
};

void fillPinholes(InkMask& mask, InkLevels& ink) {
    const auto stride = static_cast<std::size_t>(mask.stride);
    for (int y = 0; y < ink.height; ++y) {
        for (int x = 0; x < ink.width; ++x) {
            const std::size_t i = mask.indexOf(x, y);
            std::uint8_t* at = mask.values.data() + i;
            if (at[0] || !at[-1] || !at[1] || !*(at - stride) || !at[stride])
                continue;
            at[0] = InkMask::Ink;
            const std::size_t p = ink.indexOf(x, y);
            const auto w = static_cast<std::size_t>(ink.width);
            const int sum =
                ink.levels[p - 1] + ink.levels[p + 1] + ink.levels[p - w] + ink.levels[p + w];
            ink.levels[p] = static_cast<std::uint8_t>(sum / 4);
        }
    }
}

void rowRuns(const InkMask& mask, int y, int width, InkMask::Value value,
             std::vector<InkRun>& runs) {
    const std::uint8_t* row = mask.values.data() + mask.indexOf(0, y);
    for (int x = 0; x < width; ++x) {
        if (row[x] != value)
            continue;
        const int begin = x;
        while (x < width && row[x] == value)
            ++x;
        runs.push_back({y, begin, x});
    }
}

/// Joins the runs of a row with those above that touch them, corners included.
void joinRows(const std::vector<InkRun>& runs, std::size_t above, std::size_t current,
              RunSets& sets) {
    std::size_t a = above;
    for (std::size_t b = current; b < runs.size(); ++b) {
        while (a < current && runs[a].end < runs[b].begin)
            ++a;
        for (std::size_t c = a; c < current && runs[c].begin <= runs[b].end; ++c)
            sets.join(static_cast<std::uint32_t>(c), static_cast<std::uint32_t>(b));
    }
}

void grow(InkComponent& component, const InkRun& run) {
    if (component.area == 0) {
        component.left = run.begin;
        component.top = run.y;
        component.right = run.end;
    }
    component.left = std::min(component.left, run.begin);
    component.right = std::max(component.right, run.end);
    component.bottom = run.y + 1;
    component.area += run.end - run.begin;
    ++component.runCount;
}

InkComponents sortRuns(std::vector<InkRun> runs, RunSets& sets) {
    InkComponents result;
    std::vector<std::uint32_t> componentOf(runs.size());
    for (std::uint32_t i = 0; i < runs.size(); ++i) {
        const std::uint32_t root = sets.root(i);
        if (root == i) {
            componentOf[i] = static_cast<std::uint32_t>(result.components.size());
            result.components.emplace_back();
        } else {
            componentOf[i] = componentOf[root];
        }
        grow(result.components[componentOf[i]], runs[i]);
    }
    std::uint32_t first = 0;
    for (InkComponent& component : result.components) {
        component.firstRun = first;
        first += component.runCount;
    }
    std::vector<std::uint32_t> next;
    next.reserve(result.components.size());
    for (const InkComponent& component : result.components)
        next.push_back(component.firstRun);
    result.runs.resize(runs.size());
    for (std::size_t i = 0; i < runs.size(); ++i)
        result.runs[next[componentOf[i]]++] = runs[i];
    return result;
}

} // namespace

InkMask inkMask(InkLevels& ink, int threshold, Pace& pace) {
    InkMask mask{ink.width + 2, ink.height + 2, {}};
    mask.values.resize(static_cast<std::size_t>(mask.stride) * static_cast<std::size_t>(mask.rows));
    for (int y = 0; y < ink.height; ++y) {
        const std::uint8_t* levels = ink.levels.data() + ink.indexOf(0, y);
        std::uint8_t* row = mask.values.data() + mask.indexOf(0, y);
        for (int x = 0; x < ink.width; ++x)
            row[x] = levels[x] >= threshold ? InkMask::Ink : InkMask::Paper;
        pace.step(y, ink.height);
    }
    fillPinholes(mask, ink);
    return mask;
}

InkComponents findComponents(const InkMask& mask, InkMask::Value value, Pace& pace) {
    std::vector<InkRun> runs;
    RunSets sets;
    std::size_t above = 0;
    std::size_t current = 0;
    const int height = mask.rows - 2;
    for (int y = 0; y < height; ++y) {
        above = current;
        current = runs.size();
        rowRuns(mask, y, mask.stride - 2, value, runs);
        for (std::size_t i = current; i < runs.size(); ++i)
            sets.add();
        joinRows(runs, above, current, sets);
        pace.step(y, height);
    }
    return sortRuns(std::move(runs), sets);
}

std::size_t despeckle(InkComponents& components, int area, InkMask& mask, InkLevels& ink) {
    std::size_t dropped = 0;
    const auto isSpeck = [area](const InkComponent& c) { return c.area <= area; };
    for (const InkComponent& component : components.components) {
        if (!isSpeck(component))
            continue;
        ++dropped;
        for (std::uint32_t i = 0; i < component.runCount; ++i) {
            const InkRun& run = components.runs[component.firstRun + i];
            for (int x = run.begin; x < run.end; ++x) {
                mask.values[mask.indexOf(x, run.y)] = InkMask::Paper;
                ink.levels[ink.indexOf(x, run.y)] = 0;
            }
        }
    }
    std::erase_if(components.components, isSpeck);
    return dropped;
}

} // namespace ovtrace
