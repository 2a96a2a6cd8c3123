#pragma once

#include "labelimage.h"
#include "mixing.h"

#include <cstdint>
#include <functional>

namespace ovtrace {

/// Where an edge crosses a row or a column.
struct EdgePlace {
    double at = 0.0;    ///< pixels from the crack that was asked for, towards its second side
    double sigma = 0.0; ///< pixels
    bool loose = false; ///< a third colour or no pure pixel spoils it
    bool sharp = false; ///< between two pure pixels
};

/// The pixels of a row or a column, counted from a crack: 0, 1, ... on its second side, -1, -2, ...
/// on its first.
class PixelLine {
public:
    PixelLine(const PixelView& image, const LabelImage& labels, int x, int y, int dx, int dy)
        : image(image), labels(labels), x(x), y(y), dx(dx), dy(dy) {
    }
    bool contains(int k) const {
        const int column = x + k * dx;
        const int row = y + k * dy;
        return column >= 0 && row >= 0 && column < image.width && row < image.height;
    }
    QRgb color(int k) const {
        return image.at(x + k * dx, y + k * dy);
    }
    std::uint16_t label(int k) const {
        return labels.at(x + k * dx, y + k * dy);
    }
    /// Whether a label stands for a group of similar colours.
    bool isGroup(std::uint16_t label) const {
        return label >= labels.plainColors;
    }
    Light light() const {
        return labels.light;
    }
    MixColor mix(int k) const {
        return mixColor(color(k), labels.light);
    }
    QRgb paletteColor(std::uint16_t label) const {
        return labels.palette[label];
    }

private:
    const PixelView& image;
    const LabelImage& labels;
    int x; ///< the pixel at 0
    int y;
    int dx; ///< the step to the next one
    int dy;
};

/// The place of the edge at the crack between the pixels -1 and 0, which have different labels.
/// `lean` says, when that matters, how many pixels the edge moves on from one line of pixels to the
/// next, at most 1.
EdgePlace findEdge(const PixelLine& line, int noise, const std::function<double()>& lean);

} // namespace ovtrace
