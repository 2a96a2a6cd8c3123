#include "memoryestimate.h"

#include "errors.h"
#include "memory.h"
#include "memorylimit.h"
#include "settingtable.h"
#include "tracing.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace {

/// Bytes a pixel of the hardest image, noise of which each pixel has an outline of its own; twice
/// what was measured.
constexpr double MostBytesPerPixel = 400.0;

/// What writing takes on top of a trace's own memory: up to 0.7 of it was measured (PDF).
constexpr double WithWriting = 1.7;

constexpr int TileSide = 64;  ///< pixels; a multiple of 8, so that tiles begin at whole bytes
constexpr int MostTiles = 16; ///< of a sample, along each side
constexpr double Share = 1.0 / 16.0; ///< of the image, the most that a sample takes

double pixelsOf(QSize size) {
    return static_cast<double>(size.width()) * size.height();
}

[[noreturn]] void fail(const QString& name, QSize size, double bytes, double limit) {
    const auto gigabytes = [](double value) { return QString::number(value / 1e9, 'f', 2); };
    throw MemoryError(
        QString("%1: tracing %2 x %3 pixels would take about %4 GB of memory, and there "
                "are %5; make the image smaller or cut it with %6")
            .arg(name)
            .arg(size.width())
            .arg(size.height())
            .arg(gigabytes(bytes), gigabytes(limit), settingName("crop")));
}

/// Tiles from all over the image, side by side.
QImage sampleOf(const QImage& image) {
    const int along = std::min(image.width(), image.height()) / TileSide;
    const int wanted = static_cast<int>(std::sqrt(pixelsOf(image.size()) * Share) / TileSide);
    const int tiles = std::clamp(wanted, 1, std::max(1, std::min(along, MostTiles)));
    const QSize side(std::min(TileSide, image.width()), std::min(TileSide, image.height()));
    QImage sample(side * tiles, image.format());
    sample.setColorTable(image.colorTable());
    const int bits = image.depth();
    for (int row = 0; row < sample.height(); ++row) {
        const int tileRow = row / side.height();
        const int y = row % side.height() +
                      (tiles > 1 ? (image.height() - side.height()) / (tiles - 1) * tileRow : 0);
        for (int tile = 0; tile < tiles; ++tile) {
            const int x =
                tiles > 1 ? (image.width() - side.width()) / (tiles - 1) * tile / 8 * 8 : 0;
            std::memcpy(sample.scanLine(row) + qsizetype(tile) * side.width() * bits / 8,
                        image.constScanLine(y) + qsizetype(x) * bits / 8,
                        static_cast<std::size_t>(side.width() * bits / 8));
        }
    }
    return sample;
}

/// The bytes that tracing takes at its peak, measured on the sample.
double measuredBytes(const QImage& sample, const TraceSettings& settings) {
    resetPeakMemory();
    const double before = peakMemory();
    InputImage input;
    input.image = sample;
    const Drawing drawing = traceImage(std::move(input), settings);
    return peakMemory() - before;
}

} // namespace

void checkDecodingMemory(const QString& name, QSize size, QImage::Format format, int together) {
    constexpr double UsualBytes = 4.0;
    const double bytes = format == QImage::Format_Invalid
                             ? UsualBytes
                             : QImage::toPixelFormat(format).bitsPerPixel() / 8.0;
    const double limit = memoryLimit(together);
    // The tracer's pixels come on top, in one byte at least.
    const double needed = pixelsOf(size) * (bytes + 1.0);
    if (limit > 0.0 && needed > limit)
        fail(name, size, needed, limit);
}

void checkTracingMemory(const QString& name, const InputImage& input, const TraceSettings& settings,
                        const MemoryBeside& beside) {
    const double limit = memoryLimit(beside.together);
    const double pixels = pixelsOf(input.image.size());
    const auto held = static_cast<double>(input.image.sizeInBytes());
    if (limit <= 0.0 || held + beside.writing + pixels * MostBytesPerPixel < limit)
        return;
    const QImage sample = sampleOf(input.image);
    const double factor = pixels / pixelsOf(sample.size());
    const double needed =
        held + beside.writing + measuredBytes(sample, settings) * factor * WithWriting;
    if (needed > limit)
        fail(name, input.image.size(), needed, limit);
}
