#pragma once

#include "profiles.h"
#include "skeleton.h"
#include "stroke.h"

#include <vector>

namespace ovtrace {

class Pace;

/// How surely the measured points lie on their strokes.
struct Measure {
    double sigma = 0.1;     ///< standard deviation across a stroke, in pixels
    bool twoLevels = false; ///< the image has no greys
    /// Edges of strokes are rougher than those of lines rounded to whole pixels: greys with
    /// noise were thresholded.
    bool ragged = false;
};

/// What the ink was measured from.
struct Raster {
    bool twoLevels = false; ///< the image has no greys
    int scale = 1;          ///< pixels of the ink over those of the image
};

/// The deviation of the points of all chains from their neighbours. Without greys it is at least
/// what the rounding of both edges to whole pixels of the image makes.
Measure measureNoise(const std::vector<std::vector<StrokePoint>>& profiles, const Raster& raster);

/// Lines, arcs and circles of the skeleton: chains that go on straight through a node are
/// followed as one path, which is then cut into as few shapes as the noise allows.
std::vector<Stroke> fitStrokes(const Skeleton& skeleton,
                               const std::vector<std::vector<StrokePoint>>& profiles,
                               const Measure& measure, Pace& pace);

/// Makes lines of arcs that bend by no more than the waves of a scan do, once all that belongs to
/// them has been joined. Returns whether there were any.
bool straightenFlat(std::vector<Stroke>& strokes, const Measure& measure);

} // namespace ovtrace
