#include "polygons.h"

#include "planarorder.h"

#include <algorithm>
#include <map>
#include <set>
#include <utility>

namespace {

/// Rings taken apart at their corners and put together anew around each connected area.
class Assembly {
public:
    /// There and back is nothing.
    void add(const Step& step) {
        if (!isSame(step.first, step.second) && edges.erase({step.second, step.first}) == 0)
            edges.insert(step);
    }

    /// Closed rings without repeated corners.
    std::vector<Corners> loops() {
        std::vector<Corners> result;
        while (!edges.empty()) {
            auto edge = *edges.begin();
            Corners walk{edge.first};
            Places places{{edge.first, 0}};
            while (true) {
                edges.erase(edge);
                closeLoop(walk, places, edge.second, result);
                const auto next = nextAfter(edge);
                if (next == edges.end())
                    break;
                edge = *next;
            }
        }
        return result;
    }

private:
    using Steps = std::set<Step, ByStart>;
    using Places = std::map<QPointF, std::size_t, ByPlace>; ///< of corners in a walk

    /// The first one clockwise from where the edge came: it bounds the same area.
    Steps::iterator nextAfter(const Step& edge) {
        const QPointF at = edge.second;
        auto best = edges.end();
        for (auto it = edges.lower_bound(firstStepFrom(at));
             it != edges.end() && isSame(it->first, at); ++it) {
            if (best == edges.end() ||
                comesFirst(edge.first - at, it->second - at, best->second - at))
                best = it;
        }
        return best;
    }

    /// Goes on to a corner; what comes back to an earlier one is a loop.
    static void closeLoop(Corners& walk, Places& places, QPointF to, std::vector<Corners>& result) {
        const auto [place, isNew] = places.insert({to, walk.size()});
        if (isNew) {
            walk.push_back(to);
            return;
        }
        const auto start = walk.begin() + static_cast<std::ptrdiff_t>(place->second);
        Corners loop(start, walk.end());
        loop.push_back(to);
        for (auto corner = start + 1; corner != walk.end(); ++corner)
            places.erase(*corner);
        walk.erase(start + 1, walk.end());
        if (loop.size() > 3)
            result.push_back(std::move(loop));
    }

    Steps edges;
};

/// How the point lies: inside the ring, or not. Not for points of its edges.
bool contains(const Corners& ring, QPointF point) {
    bool inside = false;
    for (std::size_t i = 0; i + 1 < ring.size(); ++i) {
        const QPointF a = ring[i];
        const QPointF b = ring[i + 1];
        if ((a.y() > point.y()) != (b.y() > point.y()) &&
            point.x() < a.x() + (point.y() - a.y()) * (b.x() - a.x()) / (b.y() - a.y()))
            inside = !inside;
    }
    return inside;
}

/// Whether one ring lies in another, which it does not cross.
bool liesIn(const Corners& ring, const Corners& other) {
    // The middle of an edge touches nothing.
    return contains(other, (ring[0] + ring[1]) / 2.0);
}

bool isSimple(const std::vector<Corners>& rings) {
    std::set<QPointF, ByPlace> seen;
    for (const Corners& ring : rings) {
        for (std::size_t i = 0; i + 1 < ring.size(); ++i) {
            if (!seen.insert(ring[i]).second)
                return false;
        }
    }
    return true;
}

std::vector<Polygon> sorted(std::vector<Corners> loops) {
    std::vector<std::pair<double, Corners>> outer;
    std::vector<Corners> holes;
    for (Corners& loop : loops) {
        const double area = areaOf(loop);
        if (area > 0.0)
            outer.emplace_back(area, std::move(loop));
        else if (area < 0.0)
            holes.push_back(std::move(loop));
    }
    // What is gone around twice lies inside its own surroundings.
    std::stable_sort(outer.begin(), outer.end(),
                     [](const auto& a, const auto& b) { return a.first > b.first; });
    const auto isCovered = [&](const Corners& ring, const std::vector<Polygon>& polygons) {
        return std::any_of(polygons.begin(), polygons.end(), [&](const Polygon& each) {
            return liesIn(ring, each.outer) &&
                   std::none_of(holes.begin(), holes.end(), [&](const Corners& hole) {
                       return liesIn(hole, each.outer) && liesIn(ring, hole);
                   });
        });
    };
    std::vector<Polygon> polygons;
    for (auto& [area, ring] : outer) {
        if (!isCovered(ring, polygons))
            polygons.push_back({std::move(ring), {}});
    }
    for (Corners& hole : holes) {
        const auto around = std::find_if(polygons.rbegin(), polygons.rend(),
                                         [&](Polygon& each) { return liesIn(hole, each.outer); });
        if (around != polygons.rend())
            around->holes.push_back(std::move(hole));
    }
    return polygons;
}

} // namespace

double areaOf(const Corners& ring) {
    double sum = 0.0;
    for (std::size_t i = 0; i + 1 < ring.size(); ++i)
        sum += cross(ring[i] - ring.front(), ring[i + 1] - ring.front());
    return sum / 2.0;
}

std::vector<Polygon> polygonsOf(std::vector<Corners> rings, double cell) {
    if (!Noding(cell).addNodes(rings) && isSimple(rings) && !rings.empty() &&
        areaOf(rings.front()) > 0.0)
        return {{rings.front(), {rings.begin() + 1, rings.end()}}};
    Assembly assembly;
    for (const Corners& ring : rings) {
        for (std::size_t i = 0; i + 1 < ring.size(); ++i)
            assembly.add({ring[i], ring[i + 1]});
    }
    return sorted(assembly.loops());
}
