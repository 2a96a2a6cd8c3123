#include "imagerows.h"

#include "channels.h"

#include <algorithm>

ImageRows::ImageRows(const QImage& image, QSize size)
    : image(image), size(size), sums(static_cast<std::size_t>(size.width())),
      colors(static_cast<std::size_t>(size.width())) {
    for (int x = 0; x < size.width(); ++x)
        columns.push_back(rangeOf(x, image.width(), size.width()));
}

ImageRows::Range ImageRows::rangeOf(int index, int from, int to) {
    const auto first = static_cast<int>(qint64(index) * from / to);
    const auto end = static_cast<int>((qint64(index) + 1) * from / to);
    return {first, std::max(end, first + 1)};
}

const QRgb* ImageRows::row(int y) {
    const Range rows = rangeOf(y, image.height(), size.height());
    if (size.width() >= image.width() && rows.end == rows.first + 1)
        takeRow(rows.first);
    else
        averageRows(rows);
    return colors.data();
}

/// The image's row, 32 bits a pixel, not premultiplied.
QImage ImageRows::sourceRow(int y) const {
    return image.copy(0, y, image.width(), 1).convertToFormat(QImage::Format_ARGB32);
}

void ImageRows::takeRow(int y) {
    const QImage line = sourceRow(y);
    const auto* pixels = reinterpret_cast<const QRgb*>(line.constScanLine(0));
    std::transform(columns.begin(), columns.end(), colors.begin(),
                   [pixels](const Range& range) { return premultiplied(pixels[range.first]); });
}

void ImageRows::averageRows(Range rows) {
    std::fill(sums.begin(), sums.end(), std::array<std::uint32_t, 4>());
    for (int y = rows.first; y < rows.end; ++y)
        addRow(y);
    for (std::size_t x = 0; x < columns.size(); ++x) {
        const auto count = static_cast<std::uint32_t>(rows.end - rows.first) *
                           static_cast<std::uint32_t>(columns[x].end - columns[x].first);
        QRgb color = 0;
        for (unsigned channel = 0; channel < 4; ++channel)
            color |= (sums[x][channel] + count / 2U) / count << 8U * channel;
        colors[x] = color;
    }
}

void ImageRows::addRow(int y) {
    const QImage line = sourceRow(y);
    const auto* pixels = reinterpret_cast<const QRgb*>(line.constScanLine(0));
    for (std::size_t x = 0; x < columns.size(); ++x) {
        for (int column = columns[x].first; column < columns[x].end; ++column) {
            const QRgb pixel = premultiplied(pixels[column]);
            for (unsigned channel = 0; channel < 4; ++channel)
                sums[x][channel] += pixel >> 8U * channel & 255U;
        }
    }
}
