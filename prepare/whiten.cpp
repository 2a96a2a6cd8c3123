#include "whiten.h"

#include "pace.h"
#include "paper.h"

#include <QImage>

#include <algorithm>
#include <array>
#include <utility>

namespace ovtrace {
namespace {

constexpr std::size_t Channels = 3;
/// Bits to shift for red, green and blue.
constexpr std::array<int, Channels> Shifts{16, 8, 0};

/// Standard deviations of the paper's noise that count as white.
constexpr double WhiteDeviations = 3.0;

/// What a pixel's channel is over white.
int overWhite(QRgb pixel, int shift) {
    const int alpha = qAlpha(pixel);
    const int value = static_cast<int>(pixel >> shift & 255U);
    return alpha == 255 ? value : (value * alpha + 255 * (255 - alpha) + 127) / 255;
}

const QRgb* rowOf(const QImage& image, int y) {
    return reinterpret_cast<const QRgb*>(image.constScanLine(y));
}

/// The paper of a channel, and how far its pixels scatter below it.
struct ChannelPaper {
    Paper paper;
    double deviation;
};

ChannelPaper channelPaper(const QImage& image, int shift, Pace& pace) {
    const int columns = Paper::cellsAlong(image.width());
    const int rows = Paper::cellsAlong(image.height());
    std::vector<std::uint8_t> medians;
    medians.reserve(static_cast<std::size_t>(columns) * static_cast<std::size_t>(rows));
    std::array<std::uint32_t, 256> spreads{};
    for (int cy = 0; cy < rows; ++cy) {
        std::vector<std::array<std::uint32_t, 256>> histograms(static_cast<std::size_t>(columns));
        const int bottom = std::min((cy + 1) * Paper::Cell, image.height());
        for (int y = cy * Paper::Cell; y < bottom; ++y) {
            const QRgb* row = rowOf(image, y);
            for (int x = 0; x < image.width(); ++x)
                ++histograms[static_cast<std::size_t>(x / Paper::Cell)]
                            [static_cast<std::size_t>(overWhite(row[x], shift))];
        }
        for (int cx = 0; cx < columns; ++cx) {
            const auto& histogram = histograms[static_cast<std::size_t>(cx)];
            const int across = std::min(Paper::Cell, image.width() - cx * Paper::Cell);
            const auto count = static_cast<std::uint32_t>(across * (bottom - cy * Paper::Cell));
            medians.push_back(levelOfRank(histogram, count / 2));
            // A sixth of a normal distribution lies more than one deviation below its middle.
            ++spreads[static_cast<std::size_t>(medians.back() - levelOfRank(histogram, count / 6))];
        }
        pace.step(cy, rows);
    }
    // Cells with ink in them scatter more: the lower quarter of the cells has none.
    const double deviation = levelOfRank(spreads, static_cast<std::uint32_t>(medians.size()) / 4);
    return {evenPaper(image.width(), image.height(), std::move(medians)), deviation};
}

void divide(QImage& image, const ChannelPaper& channel, int shift, Pace& pace) {
    std::vector<std::uint8_t> paper(static_cast<std::size_t>(image.width()));
    // Half a level is what counting whole ones loses.
    const double deviation = channel.deviation > 0.0 ? channel.deviation + 0.5 : 0.0;
    const int noise = static_cast<int>(WhiteDeviations * deviation);
    for (int y = 0; y < image.height(); ++y) {
        channel.paper.row(y, paper);
        auto* row = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            const int white = std::max(paper[static_cast<std::size_t>(x)] - noise, 1);
            const int value = static_cast<int>(row[x] >> shift & 255U);
            const auto level = static_cast<QRgb>(std::min(255, (value * 255 + white / 2) / white));
            row[x] = (row[x] & ~(QRgb(255) << shift)) | level << shift;
        }
        pace.step(y, image.height());
    }
}

} // namespace

QImage whitened(const QImage& image, Pace& pace) {
    if (image.isNull() || image.depth() == 1 || isDark(image))
        return image;
    QImage result = image.convertToFormat(image.hasAlphaChannel() ? QImage::Format_ARGB32
                                                                  : QImage::Format_RGB32);
    for (const int shift : Shifts)
        divide(result, channelPaper(result, shift, pace), shift, pace);
    return result;
}

} // namespace ovtrace
