#pragma once

#include "color.h"
#include "indexgrid.h"
#include "pagearray.h"

#include <QtGlobal>

#include <cstring>
#include <limits>

namespace ovtrace {

/// Which channels of its pixels an image stores; the others follow from those. The number is that
/// of the stored bytes a pixel.
enum class Channels : int {
    Grey = 1,   ///< one for red, green and blue alike; opaque
    Opaque = 3, ///< red, green, blue; opaque
    All = 4     ///< red, green, blue, alpha
};

/// An image as the colour stages work on it: stored bytes, each a channel value minus 128.
///
/// Most images are opaque and many are grey: they take less memory and less work.
///
/// In memory there is room for one more pixel all around, as in a CellGrid: the cells of a grid can
/// take the place of the pixels one after another, unless they are larger.
class PixelImage {
public:
    /// Allocates the pixels, mid-grey and transparent at first.
    PixelImage(int width, int height, Channels channels)
        : width(width), height(height), channels(channels),
          bytes(static_cast<std::size_t>(stride() * (qsizetype(height) + 2)) + Padding) {
    }

    qsizetype pixelBytes() const {
        return static_cast<qsizetype>(channels);
    }
    qsizetype rowBytes() const {
        return pixelBytes() * width;
    }
    /// Bytes from one row to the next.
    qsizetype stride() const {
        return pixelBytes() * (qsizetype(width) + 2);
    }
    /// The pixels of row y from left to right; y = 0 is the top row.
    char* row(int y) {
        return bytes.data() + stride() * (qsizetype(y) + 1) + pixelBytes();
    }
    const char* row(int y) const {
        return bytes.data() + stride() * (qsizetype(y) + 1) + pixelBytes();
    }

    /// All of the memory: the pixel above and to the left of the first one.
    char* memory() {
        return bytes.data();
    }
    /// Gives the memory away; the pixels are gone then.
    PageMemory takeMemory() {
        return bytes.takeMemory();
    }

    int width;  ///< pixels
    int height; ///< pixels
    Channels channels;
    /// No more distinct colours than this, as far as is known.
    std::size_t mostColors = std::numeric_limits<std::size_t>::max();

private:
    static constexpr std::size_t Padding = IntGrid::Padding * sizeof(std::int32_t);

    PageArray<char> bytes;
};

/// The channelWord() of the pixel stored at `pixel`, of whose word four bytes can be read unless
/// it is grey.
template <Channels channels> std::uint32_t pixelWord(const char* pixel) {
    constexpr std::uint32_t Alpha = 0xff000000U;
    if constexpr (channels == Channels::Grey)
        return (static_cast<unsigned char>(*pixel) ^ 128U) * 0x010101U | Alpha;
    else if constexpr (channels == Channels::Opaque)
        return channelWord(pixel) | Alpha;
    else
        return channelWord(pixel);
}

/// Stores the channels of a pixel, a channelWord(). May write all four bytes at `stored` unless
/// the channels are grey: rows are to be filled from left to right.
template <Channels channels> void storePixel(char* stored, std::uint32_t word) {
    const std::uint32_t flipped = word ^ 0x80808080U;
    if constexpr (channels == Channels::Grey) {
        *stored = static_cast<char>(flipped & 0xffU);
    } else if constexpr (std::endian::native == std::endian::little) {
        std::memcpy(stored, &flipped, sizeof flipped);
    } else {
        for (int c = 0; c < static_cast<int>(channels); ++c)
            stored[c] = static_cast<char>(flipped >> 8 * c & 0xffU);
    }
}

/// Calls work.operator()<channels>() for channels known at run time.
template <typename Work> decltype(auto) withChannels(Channels channels, const Work& work) {
    switch (channels) {
    case Channels::Grey:
        return work.template operator()<Channels::Grey>();
    case Channels::Opaque:
        return work.template operator()<Channels::Opaque>();
    default:
        return work.template operator()<Channels::All>();
    }
}

} // namespace ovtrace
