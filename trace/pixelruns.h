#pragma once

#include "color.h"
#include "imagedata.h"

#include <array>

namespace ovtrace {

/// Whether the four pixels of four stored bytes from `pixels` on all equal the one before them.
inline bool fourRepeat(const char* pixels) {
    std::array<std::uint64_t, 2> before{};
    std::array<std::uint64_t, 2> four{};
    std::memcpy(before.data(), pixels - 4, sizeof before);
    std::memcpy(four.data(), pixels, sizeof four);
    return ((before[0] ^ four[0]) | (before[1] ^ four[1])) == 0;
}

/// Calls visit(pixel, x, count) for the pixels of row y from left to right, each a channelWord().
///
/// Neighbours that are alike come together where four or more of them are: drawings have long
/// runs, and in photographs a test for every pixel would cost more than it saves.
template <typename Visit> void visitRow(const ImageData& image, int y, const Visit& visit) {
    const int width = image.width;
    const char* row = image.data.constData() + qsizetype(y) * width * 4;
    for (int x = 0; x < width;) {
        const std::uint32_t pixel = channelWord(row + qsizetype(x) * 4);
        int end = x + 1;
        while (end + 4 <= width && fourRepeat(row + qsizetype(end) * 4))
            end += 4;
        visit(pixel, x, end - x);
        x = end;
    }
}

} // namespace ovtrace
