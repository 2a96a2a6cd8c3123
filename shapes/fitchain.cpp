#include "shapes/fitchain.h"

#include <algorithm>

namespace ovtrace {

std::vector<Piece> fitChain(std::span<const Sample> samples, bool closed, const FitOptions& options,
                            std::optional<Point> start, std::optional<Point> end) {
    std::vector<Sample> good;
    std::copy_if(samples.begin(), samples.end(), std::back_inserter(good),
                 [](const Sample& sample) { return isFinite(sample.at); });
    return joinChain(segmentChain(good, closed, options), good, options, start, end);
}

} // namespace ovtrace
