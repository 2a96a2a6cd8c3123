#include "otsu.h"

namespace ovtrace {

int otsuSplit(std::span<const std::uint32_t> histogram) {
    double total = 0.0;
    double sum = 0.0;
    for (std::size_t i = 0; i < histogram.size(); ++i) {
        total += histogram[i];
        sum += static_cast<double>(i) * histogram[i];
    }
    double below = 0.0;
    double sumBelow = 0.0;
    double best = -1.0;
    int first = -1;
    int last = -1;
    for (std::size_t i = 0; i < histogram.size(); ++i) {
        below += histogram[i];
        sumBelow += static_cast<double>(i) * histogram[i];
        if (below == 0.0 || below == total)
            continue;
        const double between = sumBelow / below - (sum - sumBelow) / (total - below);
        const double variance = below * (total - below) * between * between;
        if (variance > best) {
            best = variance;
            first = static_cast<int>(i);
        }
        if (variance >= best)
            last = static_cast<int>(i);
    }
    return (first + last) / 2;
}

} // namespace ovtrace
