#include "widthclasses.h"

#include <algorithm>

namespace ovtrace {
namespace {

/// Widest over narrowest of one class, and pixels that measurements may differ by.
constexpr double ClassRatio = 1.2;
constexpr double ClassPixels = 0.35;

} // namespace

std::vector<double> classifyWidths(std::vector<Stroke>& strokes) {
    std::vector<int> order;
    for (std::size_t i = 0; i < strokes.size(); ++i)
        if (!strokes[i].dropped)
            order.push_back(static_cast<int>(i));
    const auto at = [&](int i) -> Stroke& { return strokes[static_cast<std::size_t>(i)]; };
    std::stable_sort(order.begin(), order.end(),
                     [&](int a, int b) { return at(a).width < at(b).width; });
    std::vector<double> widths;
    for (std::size_t begin = 0; begin < order.size();) {
        const double most = at(order[begin]).width * ClassRatio + ClassPixels;
        double sum = 0.0;
        double weight = 0.0;
        std::size_t end = begin;
        for (; end < order.size() && at(order[end]).width <= most; ++end) {
            const double length = lengthOf(at(order[end])) + 1.0;
            sum += at(order[end]).width * length;
            weight += length;
        }
        for (std::size_t k = begin; k < end; ++k) {
            at(order[k]).widthClass = static_cast<int>(widths.size());
            at(order[k]).width = sum / weight;
        }
        widths.push_back(sum / weight);
        begin = end;
    }
    return widths;
}

} // namespace ovtrace
