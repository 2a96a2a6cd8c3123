#pragma once

#include "inklevels.h"

#include <cstdint>
#include <vector>

namespace ovtrace {

class Pace;

/// One byte a pixel: whether it is ink, and what it has been found to belong to.
///
/// Has a border of one pixel of paper on each side, so that the neighbours of every pixel exist:
/// the pixel (x, y) of the image is at (x + 1, y + 1) of the mask.
struct InkMask {
    enum Value : std::uint8_t { Paper = 0, Ink = 1, Solid = 2, Text = 3, Bar = 4 };

    int stride = 0;
    int rows = 0;
    std::vector<std::uint8_t> values;

    std::size_t indexOf(int x, int y) const {
        return static_cast<std::size_t>(y + 1) * static_cast<std::size_t>(stride) +
               static_cast<std::size_t>(x + 1);
    }
    int xOf(std::size_t index) const {
        return static_cast<int>(index % static_cast<std::size_t>(stride)) - 1;
    }
    int yOf(std::size_t index) const {
        return static_cast<int>(index / static_cast<std::size_t>(stride)) - 1;
    }
};

/// A row of neighbouring ink pixels: x from `begin` up to and not including `end`.
struct InkRun {
    int y;
    int begin;
    int end;
};

/// Ink that hangs together, diagonally too.
struct InkComponent {
    int left = 0;
    int top = 0;
    int right = 0;  ///< one past the last column
    int bottom = 0; ///< one past the last row
    int area = 0;   ///< pixels
    /// Its runs: from `firstRun` on, `runCount` of InkComponents::runs.
    std::uint32_t firstRun = 0;
    std::uint32_t runCount = 0;

    int width() const {
        return right - left;
    }
    int height() const {
        return bottom - top;
    }
};

struct InkComponents {
    std::vector<InkRun> runs; ///< sorted by component, then from the top, then from the left
    std::vector<InkComponent> components; ///< in the order of their first runs
};

/// The pixels with at least `threshold` of 255 ink. Single pixels of paper inside ink are filled,
/// in the levels as well: they are dirt.
InkMask inkMask(InkLevels& ink, int threshold, Pace& pace);

/// The connected parts of those pixels of the mask that have `value`.
InkComponents findComponents(const InkMask& mask, InkMask::Value value, Pace& pace);

/// Takes components of at most `area` pixels out of the mask and of the levels.
///
/// Returns how many they were; `components` loses them too.
std::size_t despeckle(InkComponents& components, int area, InkMask& mask, InkLevels& ink);

} // namespace ovtrace
