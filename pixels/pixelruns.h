#pragma once

#include "kernels/prefetch.h"
#include "pixelimage.h"

namespace ovtrace {

/// How many pixels visitRow() compares at a time with those before them.
template <Channels channels> inline constexpr int PixelGroup = channels == Channels::Grey ? 16 : 4;

/// Whether the `count` pixels from `pixels` on all equal the one before them.
template <Channels channels, int count> bool groupRepeats(const char* pixels) {
    constexpr auto PixelBytes = static_cast<std::size_t>(channels);
    constexpr std::size_t Size = count * PixelBytes;
    constexpr std::size_t Word = sizeof(std::uint64_t);
    const auto changes = [pixels](std::size_t place) {
        std::uint64_t before = 0;
        std::uint64_t here = 0;
        std::memcpy(&before, pixels + place - PixelBytes, Word);
        std::memcpy(&here, pixels + place, Word);
        return before ^ here;
    };
    std::uint64_t changed = changes(Size - Word); // may overlap the one before it
    for (std::size_t place = 0; place + Word < Size; place += Word)
        changed |= changes(place);
    return changed == 0;
}

/// Calls visit(pixel, x, count) for the pixels of row y from left to right, each a channelWord().
///
/// Neighbours that are alike come together where a whole group of them is: drawings have long
/// runs. Where a group is not, its pixels come one by one, since a test for each of them would
/// cost more than it saves.
template <Channels channels, typename Visit>
void visitRow(const PixelImage& image, int y, const Visit& visit) {
    constexpr int Group = PixelGroup<channels>;
    constexpr auto PixelBytes = static_cast<qsizetype>(channels);
    const int width = image.width;
    const char* row = image.row(y);
    if (y + 1 < image.height)
        prefetch(image.row(y + 1), image.rowBytes());
    const auto visitPixels = [&](int x, int end) {
        for (; x < end; ++x)
            visit(pixelWord<channels>(row + x * PixelBytes), x, 1);
    };
    int x = 0;
    while (x + Group < width) {
        int end = x + 1;
        while (end + Group <= width && groupRepeats<channels, Group>(row + end * PixelBytes))
            end += Group;
        if (end > x + 1) {
            visit(pixelWord<channels>(row + x * PixelBytes), x, end - x);
        } else {
            end = x + Group;
            visitPixels(x, end);
        }
        x = end;
    }
    visitPixels(x, width);
}

} // namespace ovtrace
