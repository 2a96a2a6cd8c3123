#include "pictures.h"

#include <QFileInfo>
#include <QImageReader>

#include <algorithm>
#include <cmath>
#include <cstring>

namespace {

const QList<QPair<QString, double>> Color{{"monochrome", 0.0}};
const QList<QPair<QString, double>> BlackAndWhite{{"usebrightness", 1.0}};

constexpr qint64 Megapixel = 1000000;

/// The corpus image, or the sample tiled to `megapixels`, as 32-bit pixels.
QImage find(const QString& corpusName, const QString& sampleName, int megapixels) {
    QImageReader::setAllocationLimit(0);
    const QString name = qEnvironmentVariable("OVTRACE_CORPUS") + '/' + corpusName;
    const bool hasCorpus = QFileInfo::exists(name);
    const QImage image(hasCorpus ? name : OVTRACE_SAMPLES "/" + sampleName);
    const QImage spread = image.convertToFormat(image.hasAlphaChannel() ? QImage::Format_ARGB32
                                                                        : QImage::Format_RGB32);
    return hasCorpus ? spread : tiled(spread, megapixels * Megapixel);
}

} // namespace

QList<Picture> pictures() {
    return {
        {"photo", find("photo/photo_bridge_10.7mp.jpg", "photo.png", 10), Color},
        {"busyphoto", find("photo/photo_raindrops_2.3mp.jpg", "photo.png", 2), Color},
        {"page", find("text/text_feyn_300dpi.png", "text.png", 8), BlackAndWhite},
        {"sparsepage", find("text/text_debref_en_300dpi.png", "text.png", 8), BlackAndWhite},
        {"clipart", find("clipart/clip_rollpaper_8.7mp.png", "logo.png", 9), Color},
        {"lineart", find("lineart/line_ctrlbox_schematic.png", "drawing.png", 6), BlackAndWhite},
        {"noise", noise(1000), Color},
    };
}

QImage noise(int side) {
    QImage image(side, side, QImage::Format_RGB32);
    std::uint32_t state = 2026;
    for (int y = 0; y < side; ++y) {
        QRgb* row = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < side; ++x) {
            state = state * 1664525U + 1013904223U;
            row[x] = state >> 8 | 0xff000000U;
        }
    }
    return image;
}

QImage tiled(const QImage& image, qint64 pixels) {
    const double scale = std::sqrt(static_cast<double>(pixels) /
                                   (static_cast<double>(image.width()) * image.height()));
    QImage result(std::max(1, static_cast<int>(image.width() * scale)),
                  std::max(1, static_cast<int>(image.height() * scale)), image.format());
    for (int y = 0; y < result.height(); ++y) {
        const auto* source = reinterpret_cast<const QRgb*>(image.constScanLine(y % image.height()));
        QRgb* row = reinterpret_cast<QRgb*>(result.scanLine(y));
        for (int x = 0; x < result.width(); x += image.width())
            std::memcpy(row + x, source,
                        sizeof(QRgb) *
                            static_cast<std::size_t>(std::min(image.width(), result.width() - x)));
    }
    return result;
}
