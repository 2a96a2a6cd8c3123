#pragma once

#include "labelimage.h"
#include "mix.h"
#include "mixing.h"
#include "mixlabels.h"

namespace ovtrace {

/// Which of its two colours a mix is given, so that lines narrower than a pixel hold together: the
/// other one where the pixels around it never reach that colour whole and it is above the middle of
/// what they reach.
class LineLabels {
public:
    LineLabels(const PixelView& image, const MixOptions& options, const std::vector<QRgb>& palette)
        : image(image), options(options), palette(palette) {
    }

    std::uint16_t labelOf(const Mix& mix) const;

private:
    bool equalsNeighbour(int x, int y) const;
    bool isRidge(const Mix& mix, const ColorAxis& way, bool ofSecond) const;

    const PixelView& image;
    const MixOptions& options;
    const std::vector<QRgb>& palette;
};

} // namespace ovtrace
