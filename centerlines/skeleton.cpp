#include "skeleton.h"

#include "distance.h"
#include "pace.h"

#include <algorithm>
#include <array>

namespace ovtrace {
namespace {

/// Marks of pixels while the graph is built, beside those of InkMask::Value.
constexpr std::uint8_t Visited = 16;
constexpr std::uint8_t Junction = 17;

struct Chain {
    std::vector<std::uint32_t> pixels;
    int from;
    int to;
};

using Steps = std::array<std::ptrdiff_t, 8>;

/// Straight neighbours first: a walk shall not cut a corner that has a pixel of its own.
Steps stepsOf(const InkMask& mask) {
    const std::ptrdiff_t s = mask.stride;
    return {-s, 1, s, -1, -s + 1, s + 1, s - 1, -s - 1};
}

/// Lines that leave a pixel: changes from paper to ink around it.
int crossingsOf(const std::uint8_t* at, std::ptrdiff_t s) {
    const std::array around{at[-s] == 1, at[-s + 1] == 1, at[1] == 1,  at[s + 1] == 1,
                            at[s] == 1,  at[s - 1] == 1,  at[-1] == 1, at[-s - 1] == 1};
    int crossings = 0;
    for (std::size_t k = 0; k < 8; ++k)
        crossings += !around[k] && around[(k + 1) % 8] ? 1 : 0;
    return crossings;
}

class GraphBuilder {
public:
    GraphBuilder(InkMask& mask, const std::vector<std::uint8_t>& distance)
        : mask(mask), distance(distance), steps(stepsOf(mask)) {
    }

    void findJunctions(const std::vector<std::size_t>& pixels) {
        for (const std::size_t i : pixels)
            if (crossingsOf(mask.values.data() + i, mask.stride) >= 3)
                junctions.push_back({static_cast<std::uint32_t>(i), -1});
        for (const JunctionPixel& j : junctions)
            mask.values[j.pixel] = Junction;
        for (std::size_t k = 0; k < junctions.size(); ++k)
            if (junctions[k].node < 0)
                floodNode(k);
    }

    void walkAll(const std::vector<std::size_t>& pixels, Pace& pace) {
        for (std::size_t k = 0; k < junctions.size(); ++k)
            for (const std::ptrdiff_t step : steps) {
                const std::size_t next = junctions[k].pixel + static_cast<std::size_t>(step);
                if (mask.values[next] == InkMask::Ink)
                    walk(next, junctions[k].node);
                pace.step(static_cast<double>(k), 2.0 * static_cast<double>(junctions.size()));
            }
        for (const std::size_t i : pixels)
            if (mask.values[i] == InkMask::Ink &&
                crossingsOf(mask.values.data() + i, mask.stride) <= 1)
                walk(i, addNode({static_cast<std::uint32_t>(i)}));
        for (const std::size_t i : pixels)
            if (mask.values[i] == InkMask::Ink)
                walk(i, -1);
    }

    void simplify() {
        contractBridges();
        pruneSpurs();
        joinThrough();
    }

    Skeleton take() {
        Skeleton skeleton;
        skeleton.nodes = std::move(nodes);
        for (SkeletonNode& node : skeleton.nodes)
            node.degree = 0;
        for (const Chain& chain : chains) {
            if (chain.pixels.empty())
                continue;
            skeleton.chains.push_back({static_cast<std::uint32_t>(skeleton.pixels.size()),
                                       static_cast<std::uint32_t>(chain.pixels.size()), chain.from,
                                       chain.to});
            skeleton.pixels.insert(skeleton.pixels.end(), chain.pixels.begin(), chain.pixels.end());
            for (const int end : {chain.from, chain.to})
                if (end >= 0)
                    ++skeleton.nodes[static_cast<std::size_t>(end)].degree;
        }
        return skeleton;
    }

private:
    struct JunctionPixel {
        std::uint32_t pixel;
        int node;
    };

    SkeletonNode& node(int i) {
        return nodes[static_cast<std::size_t>(i)];
    }

    int addNode(const std::vector<std::uint32_t>& pixels) {
        SkeletonNode made;
        for (const std::uint32_t p : pixels) {
            made.at += Point{mask.xOf(p) + 0.5, mask.yOf(p) + 0.5};
            made.radius = std::max(made.radius, halfWidthAt(distance[p]));
        }
        made.at = made.at / static_cast<double>(pixels.size());
        nodes.push_back(made);
        return static_cast<int>(nodes.size()) - 1;
    }

    std::size_t junctionAt(std::size_t pixel) const {
        const auto found =
            std::lower_bound(junctions.begin(), junctions.end(), pixel,
                             [](const JunctionPixel& j, std::size_t p) { return j.pixel < p; });
        return static_cast<std::size_t>(found - junctions.begin());
    }

    void floodNode(std::size_t first) {
        const int id = static_cast<int>(nodes.size());
        std::vector<std::uint32_t> members{junctions[first].pixel};
        junctions[first].node = id;
        for (std::size_t k = 0; k < members.size(); ++k)
            for (const std::ptrdiff_t step : steps) {
                const std::size_t next = members[k] + static_cast<std::size_t>(step);
                if (mask.values[next] != Junction)
                    continue;
                JunctionPixel& j = junctions[junctionAt(next)];
                if (j.node >= 0)
                    continue;
                j.node = id;
                members.push_back(j.pixel);
            }
        addNode(members);
    }

    /// A node beside the pixel other than `except`, or -1.
    int nodeBeside(std::size_t pixel, int except) const {
        for (const std::ptrdiff_t step : steps) {
            const std::size_t next = pixel + static_cast<std::size_t>(step);
            if (mask.values[next] != Junction)
                continue;
            const int id = junctions[junctionAt(next)].node;
            if (id != except)
                return id;
        }
        return -1;
    }

    bool touchesSolid(std::size_t pixel) const {
        for (const std::ptrdiff_t a : steps)
            for (const std::ptrdiff_t b : steps) {
                const std::size_t p = pixel + static_cast<std::size_t>(a);
                if (mask.values[p] == InkMask::Solid ||
                    (mask.values[p] != InkMask::Paper &&
                     mask.values[p + static_cast<std::size_t>(b)] == InkMask::Solid))
                    return true;
            }
        return false;
    }

    /// Follows a line from the pixel `first` beside the node `from` (-1: a closed line).
    void walk(std::size_t first, int from) {
        Chain chain{{}, from, -1};
        std::size_t at = first;
        while (true) {
            mask.values[at] = Visited;
            chain.pixels.push_back(static_cast<std::uint32_t>(at));
            // Near its start a line still touches the node that it came from.
            const int except = chain.pixels.size() <= 3 ? from : -1;
            chain.to = nodeBeside(at, except);
            if (chain.to >= 0)
                break;
            const std::ptrdiff_t step = stepToInk(at);
            if (step == 0)
                break;
            at += static_cast<std::size_t>(step);
        }
        if (chain.to < 0 && from >= 0)
            endFreely(chain, at);
        chains.push_back(std::move(chain));
    }

    /// To the first pixel of ink beside `at` that no line has visited; 0 when there is none.
    std::ptrdiff_t stepToInk(std::size_t at) const {
        for (const std::ptrdiff_t step : steps)
            if (mask.values[at + static_cast<std::size_t>(step)] == InkMask::Ink)
                return step;
        return 0;
    }

    void endFreely(Chain& chain, std::size_t at) {
        chain.to = addNode({static_cast<std::uint32_t>(at)});
        node(chain.to).solid = touchesSolid(at);
        SkeletonNode& start = node(chain.from);
        if (start.at ==
            Point{mask.xOf(chain.pixels.front()) + 0.5, mask.yOf(chain.pixels.front()) + 0.5})
            start.solid = touchesSolid(chain.pixels.front());
    }

    void countDegrees() {
        for (SkeletonNode& n : nodes)
            n.degree = 0;
        for (const Chain& chain : chains)
            for (const int end : {chain.from, chain.to})
                if (end >= 0 && !chain.pixels.empty())
                    ++node(end).degree;
    }

    /// Nodes that lie in each other's ink are one: an X thins to two T.
    void contractBridges() {
        countDegrees();
        std::vector<int> same(nodes.size());
        for (std::size_t i = 0; i < same.size(); ++i)
            same[i] = static_cast<int>(i);
        const auto rootOf = [&same](int i) {
            while (same[static_cast<std::size_t>(i)] != i)
                i = same[static_cast<std::size_t>(i)];
            return i;
        };
        for (Chain& chain : chains) {
            if (chain.from < 0 || chain.from == chain.to)
                continue;
            if (node(chain.from).degree < 3 || node(chain.to).degree < 3)
                continue;
            const double reach = std::max(node(chain.from).radius, node(chain.to).radius);
            if (static_cast<double>(chain.pixels.size()) > 1.2 * reach + 1.0)
                continue;
            const int a = rootOf(chain.from);
            const int b = rootOf(chain.to);
            chain.pixels.clear();
            if (a == b)
                continue;
            SkeletonNode& kept = node(std::min(a, b));
            const SkeletonNode& gone = node(std::max(a, b));
            kept.at = middle(kept.at, gone.at);
            kept.radius = std::max(kept.radius, gone.radius);
            same[static_cast<std::size_t>(std::max(a, b))] = std::min(a, b);
        }
        for (Chain& chain : chains) {
            if (chain.from < 0)
                continue;
            chain.from = rootOf(chain.from);
            chain.to = rootOf(chain.to);
        }
    }

    void pruneSpurs() {
        countDegrees();
        for (Chain& chain : chains) {
            if (chain.from < 0 || chain.pixels.empty())
                continue;
            const bool freeEnd = node(chain.to).degree == 1 && !node(chain.to).solid;
            const bool freeStart = node(chain.from).degree == 1 && !node(chain.from).solid;
            if (freeEnd == freeStart)
                continue;
            const SkeletonNode& root = node(freeEnd ? chain.from : chain.to);
            if (root.degree >= 3 &&
                static_cast<double>(chain.pixels.size()) < 1.3 * root.radius + 3.0)
                chain.pixels.clear();
        }
    }

    /// A node with two chains is none: they become one.
    void joinThrough() {
        countDegrees();
        std::vector<std::array<int, 2>> ends(nodes.size(), {-1, -1});
        for (std::size_t c = 0; c < chains.size(); ++c) {
            if (chains[c].pixels.empty() || chains[c].from < 0)
                continue;
            for (const int end : {chains[c].from, chains[c].to}) {
                auto& e = ends[static_cast<std::size_t>(end)];
                e[e[0] < 0 ? 0 : 1] = static_cast<int>(c);
            }
        }
        for (std::size_t n = 0; n < nodes.size(); ++n) {
            if (nodes[n].degree != 2 || ends[n][0] == ends[n][1])
                continue;
            joinAt(static_cast<int>(n), ends[n][0], ends[n][1]);
            // The second chain's far end now belongs to the first.
            const int far = chains[static_cast<std::size_t>(ends[n][0])].to;
            for (int& c : ends[static_cast<std::size_t>(far)])
                if (c == ends[n][1])
                    c = ends[n][0];
            nodes[n].degree = 0;
        }
        for (Chain& chain : chains)
            if (chain.from >= 0 && chain.from == chain.to && node(chain.from).degree == 2)
                chain.from = chain.to = -1;
    }

    void joinAt(int n, int first, int second) {
        Chain& a = chains[static_cast<std::size_t>(first)];
        Chain& b = chains[static_cast<std::size_t>(second)];
        if (a.to != n) {
            std::reverse(a.pixels.begin(), a.pixels.end());
            std::swap(a.from, a.to);
        }
        if (b.from != n) {
            std::reverse(b.pixels.begin(), b.pixels.end());
            std::swap(b.from, b.to);
        }
        a.pixels.insert(a.pixels.end(), b.pixels.begin(), b.pixels.end());
        a.to = b.to;
        b.pixels.clear();
    }

    InkMask& mask;
    const std::vector<std::uint8_t>& distance;
    Steps steps;
    std::vector<JunctionPixel> junctions; ///< sorted by pixel
    std::vector<SkeletonNode> nodes;
    std::vector<Chain> chains;
};

} // namespace

Skeleton buildSkeleton(InkMask& mask, const std::vector<std::size_t>& pixels,
                       const std::vector<std::uint8_t>& distance, Pace& pace) {
    GraphBuilder builder(mask, distance);
    builder.findJunctions(pixels);
    builder.walkAll(pixels, pace);
    builder.simplify();
    return builder.take();
}

} // namespace ovtrace
