#include "chainsegments.h"

#include "shapes/flatten.h"

namespace ovtrace {
namespace {

/// Pixels: finer than what is written, so that curves that are apart here are apart in files.
constexpr double Flatness = 0.01;

std::vector<EdgeSegment> segmentsOf(const CrackMap& cracks,
                                    std::span<const std::vector<Piece>> curves,
                                    std::span<const std::uint32_t> chains) {
    std::vector<EdgeSegment> segments;
    std::size_t count = 0;
    for (const std::uint32_t i : chains) {
        for (const Piece& piece : curves[i])
            count += flattenedCount(piece, Flatness);
    }
    segments.reserve(count);
    auto corner = static_cast<std::uint32_t>(cracks.junctions.size());
    std::vector<Point> points;
    for (const std::uint32_t i : chains) {
        const CrackChain& chain = cracks.chains[i];
        points.assign(1, curves[i].front().from);
        for (const Piece& piece : curves[i])
            flatten(piece, Flatness, points);
        const std::uint32_t first =
            chain.from >= 0 ? static_cast<std::uint32_t>(chain.from) : corner++;
        const std::uint32_t last = chain.from >= 0 ? static_cast<std::uint32_t>(chain.to) : first;
        std::uint32_t start = first;
        for (std::size_t k = 1; k < points.size(); ++k) {
            const std::uint32_t end = k + 1 == points.size() ? last : corner++;
            segments.push_back({points[k - 1], points[k], i, start, end});
            start = end;
        }
    }
    return segments;
}

} // namespace

ChainSegments::ChainSegments(const CrackMap& cracks, std::span<const std::vector<Piece>> curves,
                             std::span<const std::uint32_t> chains)
    : chainCount(chains.size()), segments(segmentsOf(cracks, curves, chains)), grid(segments) {
}

} // namespace ovtrace
