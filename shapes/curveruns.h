#pragma once

#include "shapes/chainview.h"
#include "shapes/cubics.h"

#include <optional>
#include <utility>

namespace ovtrace {

/// Runs of carriers that join smoothly and together draw a curve, and the cubics that take their
/// place where arcs would need more pieces, or would meet in kinks.
class CurveRuns {
public:
    /// Joint k lies before carrier k; there is one more than there are carriers. `spread` is what
    /// the tolerance adds to the variance of samples.
    CurveRuns(const std::vector<Carrier>& carriers, const std::vector<Joint>& joints,
              const ChainView& chain, double spread, bool closed)
        : carriers_(carriers), joints_(joints), chain_(chain), spread_(spread), closed_(closed) {
    }

    /// One past the last carrier of the run that begins with `first`; the next one where `first` is
    /// a line of its own.
    [[nodiscard]] std::size_t endOf(std::size_t first) const;

    /// Appends cubics for the carriers from `first` to before `end`; false, and nothing, where the
    /// carriers do better.
    bool append(std::size_t first, std::size_t end, std::vector<Piece>& pieces) const;

private:
    /// A smooth curve from carrier `first` to before `end`; it may be the whole of a closed chain.
    struct Run {
        std::size_t first = 0;
        std::size_t end = 0;
        bool wholeRing = false;
    };

    [[nodiscard]] bool isCurved(std::size_t index) const;
    [[nodiscard]] bool hasKink(std::size_t joint) const;
    [[nodiscard]] CurveEnd beginning(std::size_t index) const;
    [[nodiscard]] CurveEnd ending(std::size_t index) const;
    [[nodiscard]] CurveEnd division(std::size_t index) const;
    [[nodiscard]] CurveEnd place(std::size_t index, bool isEnd, const Run& run) const;
    [[nodiscard]] std::optional<Piece> curveOver(std::size_t first, std::size_t end,
                                                 const Run& run) const;
    [[nodiscard]] std::pair<Piece, std::size_t> longestCurve(std::size_t first,
                                                             const Run& run) const;

    const std::vector<Carrier>& carriers_;
    const std::vector<Joint>& joints_;
    const ChainView& chain_;
    double spread_;
    bool closed_;
};

} // namespace ovtrace
