#pragma once

#include "strokegrid.h"

#include <vector>

namespace ovtrace {

/// Least cosine of the angle between lines that are one.
constexpr double LineAgreement = 0.9;

/// Whether two strokes can be of one pen: widths of one differ by noise and by what joins in.
bool likeWidths(double a, double b);

/// How far beside a line of a width the ends of strokes lie that may be a part of it, in pixels, on
/// average over both ends.
double mergeReach(double width);

/// The longest gap between strokes of two widths that ink may fill: `lengths` is that of both.
double mergeGap(double a, double b, double lengths);

/// Which strokes can be one with a stroke: all that lie where it goes on, or go on where it lies,
/// and some others.
class MergeCandidates {
public:
    /// The strokes are referred to, and may grow and be dropped.
    MergeCandidates(const std::vector<Stroke>& strokes, int width, int height);

    /// The candidates for stroke `i`, rising. Valid until the next call.
    const std::vector<int>& of(int i);

    /// Stroke `i` has become longer.
    void grew(int i);

    /// How many numbers have been read from the grids so far: the work done.
    std::size_t readCount() const {
        return read;
    }

private:
    /// A grid, and which of its cells were read for the stroke that is looked at now.
    struct Layer {
        PointGrid grid;
        std::vector<int> readFor;
    };

    double extensionOf(const Stroke& stroke) const;
    std::vector<Point> pointsOfExtended(const Stroke& stroke) const;
    void lookAt(int i);
    void collect(Layer& layer, Point p, double reach);

    const std::vector<Stroke>& strokes;
    double longestArc = 0.0;
    Layer ends;  ///< both ends of every stroke
    Layer lines; ///< lines, as far as they may go on
    std::vector<int> found;
    std::vector<int> foundFor; ///< for each stroke, the look in which it was found last
    int lookedAt = -1;         ///< the stroke that `found` is of
    int look = 0;              ///< rises with each stroke that is looked at
    std::size_t read = 0;
};

} // namespace ovtrace
