#pragma once

#include "light.h"

#include <QRgb>

#include <cstddef>
#include <cstdint>
#include <vector>

namespace ovtrace {

/// The pixels of an image, not premultiplied; they belong to somebody else.
struct PixelView {
    const QRgb* pixels = nullptr;
    std::size_t stride = 0; ///< pixels from one row to the next
    int width = 0;
    int height = 0;

    /// The pixels of row y from left to right; y = 0 is the top row.
    const QRgb* row(int y) const {
        return pixels + stride * static_cast<std::size_t>(y);
    }
    QRgb at(int x, int y) const {
        return row(y)[x];
    }
};

/// The palette colour that each pixel belongs to, row by row.
struct LabelImage {
    int width = 0;
    int height = 0;
    std::vector<QRgb> palette;
    /// Pixels of the first colours have exactly those or are mixes; the colours after them stand
    /// for groups of similar ones.
    std::size_t plainColors = 0;
    std::vector<std::uint16_t> labels;
    /// How far a channel of a pixel that one colour covers whole may be from that colour.
    int noise = 0;
    /// What mixed pixels have the mean of.
    Light light = Light::Stored;
    /// Pixels that neither have a colour of the first ones nor are mixes of those nearby.
    std::size_t strangePixels = 0;

    /// Most colours that a palette may have.
    static constexpr std::size_t MostColors = 65535;

    std::uint16_t* row(int y) {
        return labels.data() + static_cast<std::size_t>(y) * static_cast<std::size_t>(width);
    }
    const std::uint16_t* row(int y) const {
        return labels.data() + static_cast<std::size_t>(y) * static_cast<std::size_t>(width);
    }
    std::uint16_t at(int x, int y) const {
        return row(y)[x];
    }
};

} // namespace ovtrace
