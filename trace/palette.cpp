#include "palette.h"

#include "random.h"

#include <numbers.h>
#include <pixelruns.h>

#include <algorithm>
#include <array>
#include <cmath>

namespace ovtrace {
namespace {

/// From this many colours on, generatepalette() makes a colour grid.
constexpr int SmallestGrid = 8;

/// Channel value 0..255 to stored byte; only the low 8 bits of `value` count.
signed char toStored(int value) {
    return static_cast<signed char>(((value & 255) - StoredOffset) & 255);
}

constexpr signed char StoredOpaque = 127;

Palette colorGrid(int count, StageProgress progress) {
    // The exponent is the double nearest to one third and the root is floored as it stands, so
    // that 64, 125 and 216 colours give one step less than their exact root.
    const int steps = truncateToInt(std::floor(std::pow(count, 0.3333333333333333)));
    const int step =
        truncateToInt(static_cast<double>(std::floor(255.0F / static_cast<float>(steps - 1))));
    Palette palette;
    palette.reserve(static_cast<std::size_t>(count));
    for (int red = 0; red < steps; ++red) {
        for (int green = 0; green < steps; ++green) {
            for (int blue = 0; blue < steps; ++blue) {
                palette.push_back({toStored(red * step), toStored(green * step),
                                   toStored(blue * step), StoredOpaque});
            }
            progress.advance(steps);
        }
    }
    while (palette.size() < static_cast<std::size_t>(count)) {
        palette.push_back(randomColor());
        progress.advance(1);
    }
    return palette;
}

Palette greyRamp(int count) {
    // One colour gives an infinite step and 0 * inf = NaN, whose low byte makes it black.
    const double step = 255.0 / static_cast<double>(count - 1);
    Palette palette;
    for (int i = 0; i < count; ++i) {
        const double value = i * step;
        const double floored = std::floor(value);
        const double rounded = value - floored < 0.5 ? floored : std::ceil(value);
        const signed char grey = toStored(truncateToInt(rounded));
        palette.push_back({grey, grey, grey, StoredOpaque});
    }
    return palette;
}

/// Colours are sampled at 16 levels a channel.
constexpr int CoarseStep = 16;

/// The coarse levels of a pixel's channels, 0..15 each, as one number of 16 bits. The levels are
/// those of dividing stored bytes by 16, truncated toward stored 0, plus 8: channel values below
/// 128 (stored negative) round up, the others down.
std::uint32_t coarseKey(std::uint32_t pixel) {
    const std::uint32_t below128 = (~pixel & 0x80808080U) >> 7U;
    const std::uint32_t levels = (pixel + (below128 << 4U) - below128) >> 4U & 0x0f0f0f0fU;
    const std::uint32_t pairs = (levels | levels >> 4U) & 0x00ff00ffU;
    return (pairs | pairs >> 8U) & 0xffffU;
}

Color coarseColor(std::uint32_t key) {
    const auto channel = [key](unsigned place) {
        const int level = static_cast<int>(key >> 4U * place & 15U);
        return static_cast<signed char>((level - 8) * CoarseStep);
    };
    return {channel(0), channel(1), channel(2), channel(3)};
}

/// Collects the distinct coarse colours of an image in the order in which they are first seen.
class CoarseSampler {
public:
    /// Looks at `count` pixels, at most PixelBatch.
    template <Channels channels> void add(const char* pixels, int count) {
        std::array<std::uint32_t, PixelBatch> keys{};
        for (int i = 0; i < count; ++i)
            keys[static_cast<std::size_t>(i)] =
                pixelWord<channels>(pixels + i * static_cast<qsizetype>(channels));
        for (std::uint32_t& key : keys)
            key = coarseKey(key);
        // One test for all: after the first rows there is hardly ever a new colour.
        std::uint8_t allSeen = 1;
        for (const std::uint32_t key : keys)
            allSeen &= seen[key];
        if (allSeen != 0)
            return;
        for (int i = 0; i < count; ++i)
            add(keys[static_cast<std::size_t>(i)]);
    }

    static constexpr int PixelBatch = 16;

    std::vector<Color> colors;

private:
    void add(std::uint32_t key) {
        if (seen[key] != 0)
            return;
        seen[key] = 1;
        colors.push_back(coarseColor(key));
    }

    std::array<std::uint8_t, 65536> seen{}; ///< by key: 1 for one that has occurred
};

/// The distinct coarse colours of the image.
template <Channels channels>
std::vector<Color> coarseColors(const PixelImage& image, StageProgress progress) {
    constexpr int Batch = CoarseSampler::PixelBatch;
    constexpr auto PixelBytes = static_cast<qsizetype>(channels);
    constexpr std::size_t CoarseColors = channels == Channels::Grey ? 16 : 65536;
    const std::size_t most = std::min(image.mostColors, CoarseColors);
    CoarseSampler sampler;
    for (int y = 0; y < image.height && sampler.colors.size() < most; ++y) {
        const char* row = image.row(y);
        prefetch(row + image.stride(), image.rowBytes());
        int x = 0;
        for (; x + Batch <= image.width; x += Batch) {
            const char* pixels = row + x * PixelBytes;
            if (x == 0 || !groupRepeats<channels, Batch>(pixels))
                sampler.add<channels>(pixels, Batch);
        }
        sampler.add<channels>(row + x * PixelBytes, image.width - x);
        progress.advance(image.width);
    }
    return std::move(sampler.colors);
}

} // namespace

bool lessThanColor(const Color& a, const Color& b) {
    return (a.red + a.green + a.blue) / 3 < (b.red + b.green + b.blue) / 3;
}

Palette generatepalette(int count, StageProgress progress) {
    if (count <= 0)
        return {};
    progress.expect(count);
    return count >= SmallestGrid ? colorGrid(count, progress) : greyRamp(count);
}

Palette samplepalette(const PixelImage& image, int count, StageProgress progress) {
    progress.expect(std::int64_t(image.width) * image.height + std::max(count, 0));
    std::vector<Color> sampled = withChannels(image.channels, [&]<Channels channels>() {
        return coarseColors<channels>(image, progress);
    });
    if (sampled.empty() || count <= 0)
        return {};
    // Not a stable sort: the order of equally dark colours is that of std::sort on this order.
    std::sort(sampled.begin(), sampled.end(), lessThanColor);
    const double stride = static_cast<double>(sampled.size()) / static_cast<double>(count);
    Palette palette;
    palette.reserve(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) {
        palette.push_back(sampled[static_cast<std::size_t>(stride * static_cast<double>(i))]);
        progress.advance(1);
    }
    return palette;
}

} // namespace ovtrace
