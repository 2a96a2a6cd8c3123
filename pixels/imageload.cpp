#include "imageload.h"

#include "kernels/prefetch.h"

#include <QImage>
#include <QRgba64>
#include <QtEndian>

#include <algorithm>
#include <array>
#include <new>

namespace ovtrace {
namespace {

constexpr QRgb Alpha = 0xff000000U;

constexpr char StoredWhite = 127;
constexpr char StoredBlack = -128;

/// A QRgb as a channelWord(): red and blue change places.
std::uint32_t toWord(QRgb pixel) {
    return (pixel & 0xff00ff00U) | (pixel >> 16U & 0xffU) | (pixel & 0xffU) << 16U;
}

/// Asks for the row after row y, if there is one.
void prefetchNextRow(const QImage& image, int y) {
    if (y + 1 < image.height())
        prefetch(image.constScanLine(y + 1), image.bytesPerLine());
}

const QRgb* wordsOf(const QImage& image, int y) {
    return reinterpret_cast<const QRgb*>(image.constScanLine(y));
}

/// What the pixels or colours seen so far need to have stored.
class ChannelNeeds {
public:
    void look(const QRgb* pixels, qsizetype count) {
        for (qsizetype i = 0; i < count; ++i) {
            differences |= pixels[i] ^ pixels[i] >> 8U;
            alphas &= pixels[i];
        }
    }
    bool color() const {
        return (differences & 0xffffU) != 0;
    }
    bool alpha() const {
        return (alphas & Alpha) != Alpha;
    }

private:
    QRgb differences = 0; ///< between neighbouring channels, in the two lower bytes
    QRgb alphas = Alpha;
};

Channels channelsOf(const ChannelNeeds& needs, bool mayHaveAlpha) {
    if (mayHaveAlpha && needs.alpha())
        return Channels::All;
    return needs.color() ? Channels::Opaque : Channels::Grey;
}

Channels channelsOfWords(const QImage& image, StageProgress progress) {
    const bool mayHaveAlpha = image.hasAlphaChannel();
    ChannelNeeds needs;
    // Most images that need more than grey show it soon.
    for (int y = 0; y < image.height(); ++y) {
        prefetchNextRow(image, y);
        needs.look(wordsOf(image, y), image.width());
        progress.advance(image.width());
        if (mayHaveAlpha ? needs.alpha() : needs.color())
            break;
    }
    return channelsOf(needs, mayHaveAlpha);
}

/// The index of the pixel at x in a row of an image with a colour table.
unsigned indexAt(QImage::Format format, const uchar* row, int x) {
    switch (format) {
    case QImage::Format_Mono:
        return static_cast<unsigned>(row[x >> 3]) >> (7 - (x & 7)) & 1U;
    case QImage::Format_MonoLSB:
        return static_cast<unsigned>(row[x >> 3]) >> (x & 7) & 1U;
    default:
        return row[x];
    }
}

/// Whether some pixel has an index of `count` or more.
bool hasIndexBeyond(const QImage& image, qsizetype count, StageProgress progress) {
    if (count >= (image.depth() == 1 ? 2 : 256))
        return false;
    for (int y = 0; y < image.height(); ++y) {
        const uchar* row = image.constScanLine(y);
        unsigned largest = 0;
        for (int x = 0; x < image.width(); ++x)
            largest = std::max(largest, indexAt(image.format(), row, x));
        if (static_cast<qsizetype>(largest) >= count)
            return true;
        progress.advance(image.width());
    }
    return false;
}

Channels channelsOfIndices(const QImage& image, StageProgress progress) {
    const QList<QRgb> colors = image.colorTable();
    if (hasIndexBeyond(image, colors.size(), progress))
        return Channels::All;
    ChannelNeeds needs;
    needs.look(colors.constData(), colors.size());
    return channelsOf(needs, true);
}

/// Whether all pixels are opaque; isOpaque(row, x) looks at one.
template <typename IsOpaque>
bool allOpaque(const QImage& image, StageProgress progress, const IsOpaque& isOpaque) {
    for (int y = 0; y < image.height(); ++y) {
        const uchar* row = image.constScanLine(y);
        bool opaque = true;
        for (int x = 0; x < image.width(); ++x)
            opaque = opaque && isOpaque(row, x);
        if (!opaque)
            return false;
        progress.advance(image.width());
    }
    return true;
}

/// For formats whose alpha should be that of opaque pixels but may be anything.
Channels channelsOfUnusedAlpha(const QImage& image, StageProgress progress) {
    const bool bytes = image.format() == QImage::Format_RGBX8888;
    const auto byteIsOpaque = [](const uchar* row, int x) {
        return row[4 * qsizetype(x) + 3] == 255;
    };
    const auto shortIsOpaque = [](const uchar* row, int x) {
        // Rows of foreign memory may begin anywhere.
        const auto pixel = qFromUnaligned<quint64>(row + qsizetype(x) * qsizetype(sizeof(quint64)));
        return QRgba64::fromRgba64(pixel).alpha8() == 255;
    };
    return (bytes ? allOpaque(image, progress, byteIsOpaque)
                  : allOpaque(image, progress, shortIsOpaque))
               ? Channels::Opaque
               : Channels::All;
}

/// The channels that the image needs; at times more where looking would be slow.
Channels channelsOf(const QImage& image, StageProgress progress) {
    switch (image.format()) {
    case QImage::Format_RGB32:
    case QImage::Format_ARGB32:
    case QImage::Format_ARGB32_Premultiplied:
        return channelsOfWords(image, progress);
    case QImage::Format_Mono:
    case QImage::Format_MonoLSB:
    case QImage::Format_Indexed8:
        return channelsOfIndices(image, progress);
    case QImage::Format_Grayscale8:
    case QImage::Format_Grayscale16:
        return Channels::Grey;
    case QImage::Format_RGB16:
    case QImage::Format_RGB888:
    case QImage::Format_BGR888:
        return Channels::Opaque;
    case QImage::Format_RGBX8888:
    case QImage::Format_RGBX64:
        return channelsOfUnusedAlpha(image, progress);
    default:
        return Channels::All;
    }
}

/// The colours of an image with a colour table, by index, as channelWord()s; a missing one is
/// transparent 0.
class ColorTable {
public:
    explicit ColorTable(const QImage& image) {
        const QList<QRgb> table = image.colorTable();
        std::transform(table.begin(),
                       table.begin() + std::min(table.size(), qsizetype(colors.size())),
                       colors.begin(), toWord);
    }
    std::uint32_t operator[](unsigned index) const {
        return colors[index];
    }

private:
    std::array<std::uint32_t, 256> colors{};
};

/// Stores a row of pixels; wordAt(x) is the channelWord() of the one at x.
template <Channels channels, typename WordAt>
void storeRow(char* stored, int width, const WordAt& wordAt) {
    for (int x = 0; x < width; ++x)
        storePixel<channels>(stored + x * static_cast<qsizetype>(channels), wordAt(x));
}

/// Rows of one bit a pixel, stored eight at a time, of which the last ones may fill no byte.
void loadGreyMono(const QImage& image, PixelImage& pixels, int top, StageProgress progress) {
    const ColorTable colors(image);
    std::array<std::array<char, 8>, 256> stored{};
    for (unsigned byte = 0; byte < stored.size(); ++byte) {
        for (unsigned x = 0; x < 8; ++x)
            storePixel<Channels::Grey>(&stored[byte][x], colors[byte >> (7 - x) & 1U]);
    }
    const int whole = image.width() / 8;
    const auto rest = static_cast<std::size_t>(image.width() % 8);
    for (int y = 0; y < image.height(); ++y) {
        const uchar* row = image.constScanLine(y);
        char* to = pixels.row(top + y);
        for (int i = 0; i < whole; ++i, to += 8)
            std::memcpy(to, stored[row[i]].data(), 8);
        if (rest != 0)
            std::memcpy(to, stored[row[whole]].data(), rest);
        progress.advance(image.width());
    }
}

/// Stores the pixels of `image` as rows of `pixels` from row `top` on.
template <Channels channels>
void loadRows(const QImage& image, PixelImage& pixels, int top, StageProgress progress) {
    const int width = image.width();
    const auto store = [&](const auto& wordAtRow) {
        for (int y = 0; y < image.height(); ++y) {
            prefetchNextRow(image, y);
            storeRow<channels>(pixels.row(top + y), width, wordAtRow(y));
            progress.advance(width);
        }
    };
    switch (image.format()) {
    case QImage::Format_RGB32:
    case QImage::Format_ARGB32:
    case QImage::Format_ARGB32_Premultiplied: // pixel() does not divide by alpha
        store([&](int y) { return [row = wordsOf(image, y)](int x) { return toWord(row[x]); }; });
        break;
    case QImage::Format_Grayscale8:
        store([&](int y) {
            return [row = image.constScanLine(y)](int x) { return row[x] * 0x010101U | Alpha; };
        });
        break;
    case QImage::Format_Indexed8:
        store([&, colors = ColorTable(image)](int y) {
            return [&colors, row = image.constScanLine(y)](int x) { return colors[row[x]]; };
        });
        break;
    case QImage::Format_MonoLSB:
        store([&, colors = ColorTable(image)](int y) {
            return [&colors, row = image.constScanLine(y)](int x) {
                return colors[indexAt(QImage::Format_MonoLSB, row, x)];
            };
        });
        break;
    case QImage::Format_Mono:
        if constexpr (channels == Channels::Grey) {
            loadGreyMono(image, pixels, top, progress);
            break;
        }
        store([&, colors = ColorTable(image)](int y) {
            return [&colors, row = image.constScanLine(y)](int x) {
                return colors[indexAt(QImage::Format_Mono, row, x)];
            };
        });
        break;
    default:
        store([&](int y) { return [&, y](int x) { return toWord(image.pixel(x, y)); }; });
    }
}

void loadRows(const QImage& image, PixelImage& pixels, int top, StageProgress progress) {
    withChannels(pixels.channels,
                 [&]<Channels channels>() { loadRows<channels>(image, pixels, top, progress); });
}

/// What loadRows() stores after applyThreshold(): a grey image of black and white.
PixelImage loadThresholded(const QImage& image, const Threshold& threshold,
                           StageProgress progress) {
    const int width = image.width();
    PixelImage pixels(width, image.height(), Channels::Grey);
    pixels.mostColors = 2;
    const auto blackOrWhite = [threshold](QRgb pixel) {
        return threshold.isWhite(pixel) ? StoredWhite : StoredBlack;
    };
    if (image.format() == QImage::Format_RGB32 || image.format() == QImage::Format_ARGB32) {
        for (int y = 0; y < image.height(); ++y) {
            prefetchNextRow(image, y);
            const QRgb* row = wordsOf(image, y);
            std::transform(row, row + width, pixels.row(y), blackOrWhite);
            progress.advance(width);
        }
        return pixels;
    }
    if (image.format() == QImage::Format_Grayscale8) {
        std::array<char, 256> results{};
        for (unsigned grey = 0; grey < results.size(); ++grey)
            results[grey] = blackOrWhite(
                qRgb(static_cast<int>(grey), static_cast<int>(grey), static_cast<int>(grey)));
        for (int y = 0; y < image.height(); ++y) {
            std::transform(image.constScanLine(y), image.constScanLine(y) + width, pixels.row(y),
                           [&](uchar grey) { return results[grey]; });
            progress.advance(width);
        }
        return pixels;
    }
    // A few rows at a time, so that the changed copy stays in the cache.
    constexpr int Rows = 16;
    for (int y = 0; y < image.height(); y += Rows) {
        QImage rows = image.copy(0, y, width, std::min(Rows, image.height() - y));
        if (rows.isNull())
            throw std::bad_alloc(); // the size is right, so it is memory that was missing
        applyThreshold(rows, threshold);
        loadRows(rows, pixels, y, progress);
    }
    return pixels;
}

} // namespace

PixelImage loadPixels(const QImage& image, const std::optional<Threshold>& threshold,
                      StageProgress progress) {
    progress.expect(std::int64_t(image.width()) * image.height());
    if (threshold)
        return loadThresholded(image, *threshold, progress);
    PixelImage pixels(image.width(), image.height(), channelsOf(image, progress));
    if (image.depth() == 1)
        pixels.mostColors = 2;
    loadRows(image, pixels, 0, progress);
    return pixels;
}

} // namespace ovtrace
