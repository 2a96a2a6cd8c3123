#include "blur.h"

#include "blurkernels.h"
#include "kernels/means3.h"

#include <kernels/prefetch.h>
#include <numbers.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <vector>

namespace ovtrace {
namespace {

constexpr int LargestLimit = 1024;

/// Of two pixels: no limit above this sets anything back.
constexpr int LargestDifference = 4 * 255;

using Byte = signed char;

/// The neighbours that contribute to a mean: a run of stored bytes and a weight for each.
struct Taps {
    int count = 0;
    std::array<const Byte*, 2 * MaxBlurRadius + 1> bytes{};
    std::array<double, 2 * MaxBlurRadius + 1> weights{};
    double weightSum = 0.0;

    void add(const Byte* neighbour, double weight) {
        bytes[static_cast<std::size_t>(count)] = neighbour;
        weights[static_cast<std::size_t>(count)] = weight;
        weightSum += weight;
        ++count;
    }
};

/// floor() of a mean of stored bytes.
Byte flooredByte(double mean) {
    const int truncated = static_cast<int>(mean);
    return static_cast<Byte>(truncated - (mean < truncated ? 1 : 0));
}

/// Writes `size` weighted means. The sums run in the order of the taps and each product is
/// rounded before it is added: the floor lets the last bit decide. Without taps the mean is
/// 0 / 0, which is stored as 0.
void writeMeans(const Taps& taps, Byte* means, qsizetype size) {
    if (taps.count == 0) {
        std::memset(means, 0, static_cast<std::size_t>(size));
        return;
    }
    // In pieces that stay in the cache, so that each tap is one simple loop.
    constexpr qsizetype Piece = 64;
    for (qsizetype start = 0; start < size; start += Piece) {
        const qsizetype count = std::min(Piece, size - start);
        std::array<double, Piece> sums{};
        for (std::size_t k = 0; k < static_cast<std::size_t>(taps.count); ++k) {
            const Byte* bytes = taps.bytes[k] + start;
            const double weight = taps.weights[k];
            for (qsizetype i = 0; i < count; ++i)
                sums[static_cast<std::size_t>(i)] += static_cast<double>(bytes[i]) * weight;
        }
        for (qsizetype i = 0; i < count; ++i)
            means[start + i] = flooredByte(sums[static_cast<std::size_t>(i)] / taps.weightSum);
    }
}

/// writeMeans(), with a faster form for the whole kernel of radius 1.
void blend(const Taps& taps, int radius, Byte* means, qsizetype size) {
    if (radius == 1 && taps.count == 3)
        means3(taps.bytes[0], taps.bytes[1], taps.bytes[2], means, size);
    else
        writeMeans(taps, means, size);
}

/// A row of stored pixels.
struct Row {
    int width; ///< pixels
    int pixelBytes;
};

/// The taps of pixel x of a row: those of its neighbours that lie in columns 1 .. width - 1.
Taps horizontalTaps(const Byte* bytes, const Row& row, int x, int radius) {
    const std::span<const double> kernel = blurKernel(radius);
    Taps taps;
    for (int k = -radius; k <= radius; ++k) {
        const int column = x + k;
        if (column > 0 && column < row.width)
            taps.add(bytes + qsizetype(column) * row.pixelBytes,
                     kernel[static_cast<std::size_t>(k + radius)]);
    }
    return taps;
}

void blurRow(const Byte* bytes, Byte* blurred, const Row& row, int radius) {
    // Columns firstFull .. endFull - 1 have all their neighbours: one call does them together.
    const int firstFull = std::min(radius + 1, row.width);
    const int endFull = std::max(firstFull, row.width - radius);
    const auto writeColumns = [&](int from, int count) {
        blend(horizontalTaps(bytes, row, from, radius), radius,
              blurred + qsizetype(from) * row.pixelBytes, qsizetype(count) * row.pixelBytes);
    };
    for (int x = 0; x < firstFull; ++x)
        writeColumns(x, 1);
    if (firstFull < endFull)
        writeColumns(firstFull, endFull - firstFull);
    for (int x = endFull; x < row.width; ++x)
        writeColumns(x, 1);
}

/// Whether opaque pixels stay opaque in a row or column of `size` pixels: the mean of equal bytes
/// may be one less at the borders, where only some of the weights count.
bool staysOpaque(int size, int radius) {
    constexpr Byte Opaque = 127;
    // Long enough to have every combination of neighbours that a longer one has.
    const int length = std::min(size, 4 * radius + 4);
    const std::vector<Byte> alphas(static_cast<std::size_t>(length), Opaque);
    std::vector<Byte> blurred(alphas.size());
    blurRow(alphas.data(), blurred.data(), {length, 1}, radius);
    return blurred == alphas;
}

/// The same pixels with all their channels stored.
PixelImage withAllChannels(const PixelImage& image, StageProgress progress) {
    PixelImage result(image.width, image.height, Channels::All);
    withChannels(image.channels, [&]<Channels channels>() {
        for (int y = 0; y < image.height; ++y) {
            for (qsizetype x = 0; x < image.width; ++x)
                storePixel<Channels::All>(
                    result.row(y) + x * result.pixelBytes(),
                    pixelWord<channels>(image.row(y) + x * image.pixelBytes()));
            progress.advance(image.width);
        }
    });
    return result;
}

/// Takes over each blurred pixel that differs from its original by at most `limit` in all.
void keepSmallChanges(const Byte* blurred, Byte* original, const Row& row, int limit) {
    // One stored byte stands for three channels.
    const int weight = row.pixelBytes == 1 ? 3 : 1;
    const qsizetype size = qsizetype(row.width) * row.pixelBytes;
    for (qsizetype i = 0; i < size; i += row.pixelBytes) {
        int difference = 0;
        for (qsizetype c = i; c < i + row.pixelBytes; ++c)
            difference += weight * std::abs(blurred[c] - original[c]);
        if (difference <= limit)
            std::copy_n(blurred + i, row.pixelBytes, original + i);
    }
}

/// The horizontally blurred rows around the current one, each row computed once.
class RowWindow {
public:
    RowWindow(qsizetype rowBytes, int radius)
        : rowBytes(rowBytes), rowCount(2 * radius + 1),
          bytes(static_cast<std::size_t>(rowBytes * rowCount)) {
    }
    Byte* row(int y) {
        return bytes.data() + rowBytes * (y % rowCount);
    }

private:
    qsizetype rowBytes;
    int rowCount;
    std::vector<Byte> bytes;
};

/// The taps of row y: the blurred rows around it that lie in 1 .. height - 1.
Taps verticalTaps(RowWindow& window, int y, int height, int radius) {
    const std::span<const double> kernel = blurKernel(radius);
    Taps taps;
    for (int k = -radius; k <= radius; ++k) {
        const int row = y + k;
        if (row > 0 && row < height)
            taps.add(window.row(row), kernel[static_cast<std::size_t>(k + radius)]);
    }
    return taps;
}

} // namespace

void blur(PixelImage& image, float radius, float delta, StageProgress progress) {
    const int wholeRadius = floorToInt(static_cast<double>(radius));
    if (wholeRadius < 1)
        return;
    const int r = std::min(wholeRadius, MaxBlurRadius);
    const int limit = std::min(truncateToInt(static_cast<double>(std::fabs(delta))), LargestLimit);
    if (image.channels != Channels::All &&
        !(staysOpaque(image.width, r) && staysOpaque(image.height, r)))
        image = withAllChannels(image, progress);
    progress.expect(std::int64_t(image.width) * image.height);
    image.mostColors = std::numeric_limits<std::size_t>::max();
    const Row shape{image.width, static_cast<int>(image.pixelBytes())};
    const qsizetype rowBytes = image.rowBytes();
    const auto bytesOf = [&](int y) { return reinterpret_cast<Byte*>(image.row(y)); };
    RowWindow window(rowBytes, r);
    std::vector<Byte> blurred(static_cast<std::size_t>(rowBytes));
    int nextRow = 0;
    // In place: when row y is replaced, the horizontal pass has gone past it already.
    for (int y = 0; y < image.height; ++y) {
        for (; nextRow < image.height && nextRow <= y + r; ++nextRow) {
            if (nextRow + 1 < image.height)
                prefetch(bytesOf(nextRow + 1), rowBytes);
            blurRow(bytesOf(nextRow), window.row(nextRow), shape, r);
        }
        progress.advance(image.width);
        const Taps taps = verticalTaps(window, y, image.height, r);
        if (limit >= LargestDifference) {
            blend(taps, r, bytesOf(y), rowBytes);
            continue;
        }
        blend(taps, r, blurred.data(), rowBytes);
        keepSmallChanges(blurred.data(), bytesOf(y), shape, limit);
    }
}

} // namespace ovtrace
