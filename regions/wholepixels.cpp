#include "wholepixels.h"

#include "shapes/piece.h"

#include <algorithm>
#include <cmath>

namespace ovtrace {
namespace {

class WholePixels {
public:
    WholePixels(const PixelView& image, const LabelImage& labels) : image(image), labels(labels) {
    }

    /// Whether a place lies deep in a pixel that its own colour covers whole.
    bool isDeepIn(Point place) const {
        // From all sides of the pixel: a line past such a place leaves a sixth of it at least.
        constexpr double Deep = 0.3;
        const double column = std::floor(place.x);
        const double row = std::floor(place.y);
        const auto isInside = [](double offset) { return offset >= Deep && offset <= 1.0 - Deep; };
        if (!isInside(place.x - column) || !isInside(place.y - row) || !(column >= 0.0) ||
            !(row >= 0.0) || column >= image.width || row >= image.height)
            return false;
        const int x = static_cast<int>(column);
        const int y = static_cast<int>(row);
        const std::uint16_t label = labels.at(x, y);
        return label < labels.plainColors && image.at(x, y) == labels.palette[label];
    }

private:
    const PixelView& image;
    const LabelImage& labels;
};

} // namespace

bool crossWholePixels(std::span<const Piece> pieces, const PixelView& image,
                      const LabelImage& labels, bool closed) {
    constexpr double Step = 0.25; // pixels
    constexpr double Reach = 2.5; // pixels
    if (pieces.empty())
        return false;
    const WholePixels whole(image, labels);
    const Point first = pieces.front().from;
    const Point last = pieces.back().to;
    for (const Piece& piece : pieces) {
        const int count = std::max(1, static_cast<int>(std::ceil(lengthOf(piece) / Step)));
        for (int i = 0; i < count; ++i) {
            const Point place = pointAt(piece, (i + 0.5) / count);
            if (!closed && (distance(place, first) < Reach || distance(place, last) < Reach))
                continue;
            if (whole.isDeepIn(place))
                return true;
        }
    }
    return false;
}

} // namespace ovtrace
