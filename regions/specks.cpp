#include "specks.h"

#include <algorithm>
#include <utility>

namespace ovtrace {
namespace {

class SpeckMerger {
public:
    SpeckMerger(LabelImage& labels, const RegionGrid& grid, double size)
        : labels(labels), grid(grid), isSpeck(grid.labels.size()) {
        for (std::size_t i = 0; i < isSpeck.size(); ++i)
            isSpeck[i] = grid.pixelCount[i] < size;
    }

    bool run() {
        if (std::find(isSpeck.begin(), isSpeck.end(), true) == isSpeck.end())
            return false;
        collect();
        choose();
        return relabel();
    }

private:
    /// An edge between a speck and another area.
    using Contact = std::pair<std::int32_t, std::int32_t>;

    void touch(std::int32_t a, std::int32_t b) {
        if (a == b || a < 0 || b < 0)
            return;
        if (isSpeck[static_cast<std::size_t>(a)])
            contacts.emplace_back(a, b);
        if (isSpeck[static_cast<std::size_t>(b)])
            contacts.emplace_back(b, a);
    }
    void collect() {
        for (int y = 0; y < grid.height; ++y) {
            for (int x = 0; x < grid.width; ++x) {
                if (x > 0)
                    touch(grid.at(x - 1, y), grid.at(x, y));
                if (y > 0)
                    touch(grid.at(x, y - 1), grid.at(x, y));
            }
        }
        std::sort(contacts.begin(), contacts.end());
    }
    /// Areas that are no specks come first, then larger specks: chains of specks end in one.
    bool isBetter(std::size_t count, std::int32_t area, std::size_t most, std::int32_t best) const {
        const auto a = static_cast<std::size_t>(area);
        const auto b = static_cast<std::size_t>(best);
        if (isSpeck[a] != isSpeck[b])
            return !isSpeck[a];
        if (count != most)
            return count > most;
        return grid.pixelCount[a] > grid.pixelCount[b];
    }
    void choose() {
        target.resize(isSpeck.size());
        for (std::size_t i = 0; i < target.size(); ++i)
            target[i] = static_cast<std::int32_t>(i);
        for (std::size_t i = 0; i < contacts.size();) {
            const std::int32_t speck = contacts[i].first;
            std::int32_t best = -1;
            std::size_t most = 0;
            while (i < contacts.size() && contacts[i].first == speck) {
                const std::int32_t area = contacts[i].second;
                const std::size_t begin = i;
                while (i < contacts.size() && contacts[i] == Contact{speck, area})
                    ++i;
                if (best < 0 || isBetter(i - begin, area, most, best)) {
                    best = area;
                    most = i - begin;
                }
            }
            target[static_cast<std::size_t>(speck)] = best;
        }
    }
    /// Follows specks to what they become; two that would become each other stay.
    std::int32_t finalTarget(std::int32_t area) const {
        const auto at = [this](std::int32_t i) { return target[static_cast<std::size_t>(i)]; };
        std::int32_t slow = area;
        std::int32_t fast = area;
        do {
            slow = at(slow);
            fast = at(at(fast));
        } while (slow != fast);
        return at(slow) == slow ? slow : std::min(slow, at(slow));
    }
    bool relabel() {
        std::vector<std::uint16_t> changed(isSpeck.size());
        bool any = false;
        for (std::size_t i = 0; i < isSpeck.size(); ++i) {
            const auto end = static_cast<std::size_t>(finalTarget(static_cast<std::int32_t>(i)));
            changed[i] = grid.labels[end];
            any = any || changed[i] != grid.labels[i];
        }
        for (std::size_t k = 0; k < grid.ids.size(); ++k) {
            if (grid.ids[k] >= 0)
                labels.labels[k] = changed[static_cast<std::size_t>(grid.ids[k])];
        }
        return any;
    }

    LabelImage& labels;
    const RegionGrid& grid;
    std::vector<bool> isSpeck;
    std::vector<Contact> contacts;
    std::vector<std::int32_t> target; ///< what each area becomes
};

} // namespace

bool mergeSpecks(LabelImage& labels, const RegionGrid& grid, double size) {
    return SpeckMerger(labels, grid, size).run();
}

} // namespace ovtrace
