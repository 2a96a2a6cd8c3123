#pragma once

#include "shapes/carrier.h"

#include <span>
#include <vector>

namespace ovtrace {

/// Where one carrier ends and the next begins; two places where a cap lies between.
struct Joint {
    Point before;
    Point after;
    bool smooth = false;
};

/// The samples of a chain by index, round its end when it is closed.
class ChainView {
public:
    explicit ChainView(std::span<const Sample> samples) : samples_(samples) {
    }

    [[nodiscard]] Point at(int index) const {
        return samples_[static_cast<std::size_t>(index) % samples_.size()].at;
    }

    /// The samples from `first` to `last` with the weights of the fit.
    [[nodiscard]] std::vector<Sample> between(int first, int last, double spread) const {
        std::vector<Sample> result;
        const int end = last >= first ? last : unwrapped(first, last);
        for (int k = first; k <= end; ++k) {
            Sample sample = samples_[static_cast<std::size_t>(k) % samples_.size()];
            sample.sigma = std::sqrt(sample.sigma * sample.sigma + spread);
            result.push_back(sample);
        }
        return result;
    }

    /// `sample` after so many turns of the chain that it lies behind `earlier`.
    [[nodiscard]] int unwrapped(int earlier, int sample) const {
        const int count = static_cast<int>(samples_.size());
        return sample > earlier ? sample : sample + (earlier - sample) / count * count + count;
    }

private:
    std::span<const Sample> samples_;
};

} // namespace ovtrace
