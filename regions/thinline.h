#pragma once

#include <span>

namespace ovtrace {

/// Where a line crosses a row or a column of pixels that it leaves none of pure.
///
/// A pixel's share tells nothing about where in the pixel it lies, so that the first moment of the
/// shares takes each to be in the middle of its pixel. A line that is wider or narrower than whole
/// pixels would swing to and fro as it leans; that is taken out here. Where the line lies within
/// one pixel, its place there is open.
class ThinLine {
public:
    /// `shares` are what the line covers of the pixels of a row, their sum its width; the first
    /// moment that they give is known to within `doubt`. `lean` is how many pixels the line moves
    /// on from one row to the next, at most 1.
    ThinLine(std::span<const double> shares, double lean, double doubt);

    /// Pixels from the outer side of the first pixel.
    double centre() const {
        return at;
    }
    /// Of the centre, in pixels.
    double sigma() const {
        return uncertainty;
    }
    /// By how much the share of a pixel is at most another than that of such a line.
    double misfit() const;

private:
    double momentAt(double centre) const;
    double shareOf(std::size_t pixel) const;

    std::span<const double> shares;
    double lean;
    double width = 0.0;
    double at = 0.0;
    double uncertainty = 0.0;
};

} // namespace ovtrace
