#pragma once

#include "support/pixelview.h"

#include <mapassembly.h>

#include <string>
#include <vector>

namespace ovtrace {

/// The map of areas drawn with letters: each letter is a colour, '.' is transparent.
inline RegionMap mapOf(const std::vector<std::string>& rows) {
    LabelImage labels;
    labels.width = static_cast<int>(rows[0].size());
    labels.height = static_cast<int>(rows.size());
    labels.palette = {0U, 0xffffffffU, 0xff000000U, 0xffe31a1cU};
    QImage image(labels.width, labels.height, QImage::Format_ARGB32);
    for (int y = 0; y < labels.height; ++y) {
        for (int x = 0; x < labels.width; ++x) {
            const char letter = rows[static_cast<std::size_t>(y)][static_cast<std::size_t>(x)];
            const auto label = static_cast<std::uint16_t>(letter == '.' ? 0 : letter - 'A' + 1);
            labels.labels.push_back(label);
            image.setPixel(x, y, labels.palette[label]);
        }
    }
    const RegionGrid grid = findRegions(viewOf(image), labels);
    const CrackMap cracks = walkCracks(grid);
    return assembleMap(grid, cracks, pixelEdges(cracks), labels.palette);
}

} // namespace ovtrace
