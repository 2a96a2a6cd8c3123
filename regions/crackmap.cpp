#include "crackmap.h"

#include <algorithm>
#include <array>

namespace ovtrace {
namespace {

constexpr std::array Steps{Step::Right, Step::Down, Step::Left, Step::Up};

class CrackWalker {
public:
    explicit CrackWalker(const RegionGrid& grid)
        : grid(grid), columns(static_cast<std::size_t>(grid.width) + 1),
          marks(columns * (static_cast<std::size_t>(grid.height) + 1), 0) {
    }

    CrackMap run() {
        walkFromJunctions();
        walkLoops();
        formRings();
        return std::move(map);
    }

private:
    /// Of a corner: that the walk has passed the edge to its right, the one below it.
    enum Mark : std::uint8_t { PassedRight = 1, PassedDown = 2 };

    bool isCrack(GridPoint p, Step step) const {
        const GridPoint left = pixelLeftOf(p, step);
        const GridPoint right = pixelRightOf(p, step);
        return grid.at(left.x, left.y) != grid.at(right.x, right.y);
    }
    /// Whether an edge has an area on one side at least: what is transparent has none, nor has what
    /// lies beyond the image, but where these two meet the rim of an area has a corner.
    bool hasArea(GridPoint p, Step step) const {
        const GridPoint left = pixelLeftOf(p, step);
        const GridPoint right = pixelRightOf(p, step);
        return grid.at(left.x, left.y) >= 0 || grid.at(right.x, right.y) >= 0;
    }
    std::size_t indexOf(GridPoint p) const {
        return static_cast<std::size_t>(p.y) * columns + static_cast<std::size_t>(p.x);
    }
    /// Sets the mark of an edge; returns whether it had been set.
    bool pass(GridPoint p, Step step) {
        const GridPoint corner = step == Step::Left || step == Step::Up ? p + step : p;
        const Mark mark = step == Step::Right || step == Step::Left ? PassedRight : PassedDown;
        std::uint8_t& place = marks[indexOf(corner)];
        const bool passed = (place & mark) != 0;
        place |= mark;
        return passed;
    }
    bool isPassed(GridPoint p, Step step) const {
        const GridPoint corner = step == Step::Left || step == Step::Up ? p + step : p;
        const Mark mark = step == Step::Right || step == Step::Left ? PassedRight : PassedDown;
        return (marks[indexOf(corner)] & mark) != 0;
    }

    /// Where four areas' pixels meet and two of them belong together across the corner.
    enum class Crossing { None, Falling, Rising };
    Crossing crossingAt(GridPoint p) const {
        const bool falling = grid.at(p.x - 1, p.y - 1) == grid.at(p.x, p.y);
        const bool rising = grid.at(p.x, p.y - 1) == grid.at(p.x - 1, p.y);
        if (falling && rising) {
            const auto place = static_cast<std::uint64_t>(indexOf(p));
            return std::binary_search(grid.risingJoins.begin(), grid.risingJoins.end(), place)
                       ? Crossing::Rising
                       : Crossing::Falling;
        }
        if (falling)
            return Crossing::Falling;
        return rising ? Crossing::Rising : Crossing::None;
    }
    int degree(GridPoint p) const {
        return static_cast<int>(
            std::count_if(Steps.begin(), Steps.end(), [&](Step step) { return isCrack(p, step); }));
    }
    bool isJunction(GridPoint p) const {
        const int count = degree(p);
        return count == 3 || (count == 4 && crossingAt(p) == Crossing::None);
    }

    /// The way on from `p`, no junction, which was reached along `step`.
    Step wayOn(GridPoint p, Step step) const {
        const bool straight = isCrack(p, step);
        const bool right = isCrack(p, turnedRight(step));
        if (!straight)
            return right ? turnedRight(step) : turnedLeft(step);
        if (!right)
            return step;
        // Crosswise: the pixels that belong together stay on one side.
        const bool horizontal = step == Step::Right || step == Step::Left;
        const bool falling = crossingAt(p) == Crossing::Falling;
        return falling == horizontal ? turnedRight(step) : turnedLeft(step);
    }

    /// Walks from `start` along `step` to the next junction or back to the start.
    void walk(GridPoint start, Step step, std::int32_t from) {
        CrackChain chain;
        chain.start = start;
        chain.firstStep = map.steps.size();
        chain.from = from;
        const GridPoint left = pixelLeftOf(start, step);
        const GridPoint right = pixelRightOf(start, step);
        chain.left = std::max(grid.at(left.x, left.y), RegionGrid::Outside);
        chain.right = std::max(grid.at(right.x, right.y), RegionGrid::Outside);
        GridPoint p = start;
        const Step first = step;
        while (true) {
            pass(p, step);
            map.steps.push_back(step);
            p = p + step;
            if (from >= 0 && isJunction(p))
                break;
            step = wayOn(p, step);
            if (from < 0 && p == start && step == first)
                break;
        }
        chain.stepCount = map.steps.size() - chain.firstStep;
        if (from >= 0)
            chain.to = junctionAt(p);
        map.chains.push_back(chain);
        connect(chain, static_cast<std::uint32_t>(map.chains.size() - 1));
    }

    std::int32_t junctionAt(GridPoint p) const {
        const auto before = [](GridPoint a, GridPoint b) {
            return a.y != b.y ? a.y < b.y : a.x < b.x;
        };
        const auto found = std::lower_bound(map.junctions.begin(), map.junctions.end(), p, before);
        return static_cast<std::int32_t>(found - map.junctions.begin());
    }

    void walkFromJunctions() {
        forEachCorner([this](GridPoint p) {
            if (isJunction(p))
                map.junctions.push_back(p);
        });
        ways.resize(map.junctions.size());
        for (std::size_t i = 0; i < map.junctions.size(); ++i) {
            const GridPoint p = map.junctions[i];
            for (const Step step : Steps) {
                if (isCrack(p, step) && hasArea(p, step) && !isPassed(p, step))
                    walk(p, step, static_cast<std::int32_t>(i));
            }
        }
    }
    void walkLoops() {
        forEachCorner([this](GridPoint p) {
            for (const Step step : {Step::Right, Step::Down}) {
                if (isCrack(p, step) && hasArea(p, step) && !isPassed(p, step))
                    walk(p, step, -1);
            }
        });
    }
    /// Calls visit for every corner at which pixels differ.
    template <typename Visit> void forEachCorner(const Visit& visit) {
        for (int y = 0; y <= grid.height; ++y) {
            visitCorner({0, y}, visit);
            if (y == 0 || y == grid.height)
                visitRim(y, visit);
            else
                visitBetween(y, visit);
            visitCorner({grid.width, y}, visit);
        }
    }
    template <typename Visit> void visitCorner(GridPoint p, const Visit& visit) const {
        if (std::any_of(Steps.begin(), Steps.end(), [&](Step step) { return isCrack(p, step); }))
            visit(p);
    }
    template <typename Visit> void visitRim(int y, const Visit& visit) const {
        for (int x = 1; x < grid.width; ++x)
            visitCorner({x, y}, visit);
    }
    /// Between two rows, where most corners lie within an area.
    template <typename Visit> void visitBetween(int y, const Visit& visit) const {
        const std::int32_t* below =
            grid.ids.data() + static_cast<std::size_t>(y) * static_cast<std::size_t>(grid.width);
        const std::int32_t* above = below - grid.width;
        std::int32_t before = above[0];
        for (int x = 1; x < grid.width; ++x) {
            const bool plain = above[x] == before && below[x] == before && below[x - 1] == before;
            before = above[x];
            if (!plain)
                visit(GridPoint{x, y});
        }
    }

    /// The chains that leave a junction, by direction; -1 for none.
    struct Ways {
        std::array<std::int64_t, 4> pass{-1, -1, -1, -1}; ///< 2 * chain + reversed
    };
    void connect(const CrackChain& chain, std::uint32_t index) {
        if (chain.from < 0)
            return;
        const Step first = map.steps[chain.firstStep];
        const Step last = map.steps[chain.firstStep + chain.stepCount - 1];
        way(chain.from, first) = std::int64_t(index) * 2;
        way(chain.to, opposite(last)) = std::int64_t(index) * 2 + 1;
    }
    std::int64_t& way(std::int32_t junction, Step step) {
        return ways[static_cast<std::size_t>(junction)].pass[static_cast<std::size_t>(step)];
    }

    std::int32_t regionOf(ChainPass p) const {
        const CrackChain& chain = map.chains[p.chain];
        return p.reversed ? chain.right : chain.left;
    }
    /// The pass that follows along the ring of the area on the left: the leftmost way.
    ChainPass next(ChainPass p) {
        const CrackChain& chain = map.chains[p.chain];
        if (chain.from < 0)
            return p;
        const std::int32_t junction = p.reversed ? chain.from : chain.to;
        const Step arrived = p.reversed ? opposite(map.steps[chain.firstStep])
                                        : map.steps[chain.firstStep + chain.stepCount - 1];
        std::int64_t found = -1;
        for (const Step step : {turnedLeft(arrived), arrived, turnedRight(arrived)}) {
            if (found < 0)
                found = way(junction, step);
        }
        return {static_cast<std::uint32_t>(found / 2), found % 2 != 0};
    }
    std::int64_t areaOf(const CrackChain& chain) const {
        std::int64_t area = 0;
        GridPoint p = chain.start;
        for (std::size_t i = 0; i < chain.stepCount; ++i) {
            const Step step = map.steps[chain.firstStep + i];
            if (step == Step::Right)
                area += p.y;
            else if (step == Step::Left)
                area -= p.y;
            p = p + step;
        }
        return area;
    }

    void formRings() {
        std::vector<std::array<bool, 2>> used(map.chains.size(), {false, false});
        for (std::uint32_t i = 0; i < map.chains.size(); ++i) {
            for (const bool reversed : {false, true}) {
                if (!used[i][reversed ? 1 : 0] && regionOf({i, reversed}) >= 0)
                    formRing({i, reversed}, used);
            }
        }
        std::stable_sort(map.rings.begin(), map.rings.end(),
                         [](const CrackRing& a, const CrackRing& b) {
                             if (a.region != b.region)
                                 return a.region < b.region;
                             return a.area > 0 && b.area < 0;
                         });
    }
    void formRing(ChainPass first, std::vector<std::array<bool, 2>>& used) {
        CrackRing ring;
        ring.firstPass = map.passes.size();
        ring.region = regionOf(first);
        ChainPass p = first;
        do {
            used[p.chain][p.reversed ? 1 : 0] = true;
            map.passes.push_back(p);
            // The area lies above edges that lead to the right and below those that lead to the
            // left.
            const std::int64_t area = areaOf(map.chains[p.chain]);
            ring.area += p.reversed ? -area : area;
            p = next(p);
        } while (!used[p.chain][p.reversed ? 1 : 0]);
        ring.passCount = map.passes.size() - ring.firstPass;
        map.rings.push_back(ring);
    }

    const RegionGrid& grid;
    std::size_t columns;
    std::vector<std::uint8_t> marks;
    CrackMap map;
    std::vector<Ways> ways;
};

} // namespace

CrackMap walkCracks(const RegionGrid& grid) {
    return CrackWalker(grid).run();
}

} // namespace ovtrace
