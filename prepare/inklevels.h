#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

class QImage;

namespace ovtrace {

class Pace;

/// Ink of each pixel, 0 for paper to 255 for full ink. Rows from the top, no padding.
struct InkLevels {
    int width = 0;
    int height = 0;
    std::vector<std::uint8_t> levels;

    std::size_t indexOf(int x, int y) const {
        return static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
               static_cast<std::size_t>(x);
    }
    std::uint8_t at(int x, int y) const {
        return levels[indexOf(x, y)];
    }
    /// Ink at a place between pixel middles, which lie at (0.5, 0.5) and so on; y down. Paper
    /// outside the image.
    double sample(double x, double y) const;
};

/// Measures each pixel against the paper around it.
///
/// The paper's brightness is a median over a neighbourhood much wider than any stroke, so that
/// uneven light and yellowed paper do not matter; full ink is what the dark pixels reach. On dark
/// paper light lines are the ink. Coloured lines count by their darkest channel.
InkLevels inkLevels(const QImage& image, Pace& pace);

} // namespace ovtrace
