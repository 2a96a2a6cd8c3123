#include "conversions.h"

#include <algorithm>

QList<QList<int>> toLists(const ovtrace::IndexGrid& grid) {
    return std::visit(
        [](const auto& cells) {
            QList<QList<int>> rows;
            for (int y = 0; y < cells.height + 2; ++y) {
                QList<int> row;
                for (int x = 0; x < cells.width + 2; ++x) {
                    const auto cell = cells.rowCells(y)[x];
                    row.append(cell == cells.Border ? -1 : static_cast<int>(cell));
                }
                rows.append(row);
            }
            return rows;
        },
        grid);
}

QList<QList<int>> toLists(const ovtrace::Path& path) {
    QList<QList<int>> points;
    for (const ovtrace::PathPoint& point : path)
        points.append({point.x, point.y, point.nodeType});
    return points;
}

QList<QList<double>> toLists(const ovtrace::InternodePath& nodes) {
    QList<QList<double>> records;
    for (const ovtrace::Internode& node : nodes)
        records.append({node.x, node.y, static_cast<double>(node.direction)});
    return records;
}

QList<QList<double>> toLists(const ovtrace::TracedPath& segments) {
    QList<QList<double>> records;
    for (const ovtrace::Segment& s : segments)
        records.append({s.type, s.x1, s.y1, s.x2, s.y2, s.x3, s.y3});
    return records;
}

namespace {

template <typename Cell> ovtrace::CellGrid<Cell> gridOf(const QList<QList<int>>& rows, int width) {
    ovtrace::CellGrid<Cell> grid(width, static_cast<int>(rows.size()));
    for (int y = 0; y < rows.size(); ++y) {
        for (int x = 0; x < width; ++x)
            grid.rowCells(y + 1)[x + 1] = static_cast<Cell>(rows[y][x]);
    }
    return grid;
}

} // namespace

ovtrace::QuantizedImage quantizedImage(const QList<QList<int>>& rows, int colors) {
    const int width = rows.isEmpty() ? 0 : static_cast<int>(rows.first().size());
    return ovtrace::withCell(static_cast<std::size_t>(colors),
                             [&]<typename Cell>() -> ovtrace::QuantizedImage {
                                 return {gridOf<Cell>(rows, width), colors};
                             });
}

ovtrace::Path toPath(const QList<QList<int>>& points) {
    ovtrace::Path path;
    for (const QList<int>& point : points)
        path.push_back({point[0], point[1], point[2]});
    return path;
}

ovtrace::InternodePath toNodes(const QList<QList<double>>& nodes) {
    ovtrace::InternodePath path;
    for (const QList<double>& node : nodes)
        path.push_back({node[0], node[1], static_cast<int>(node[2])});
    return path;
}

ovtrace::PixelImage imageOf(int width, int height, const QList<QList<char>>& pixels) {
    QList<char> bytes;
    for (const QList<char>& pixel : pixels)
        bytes.append(pixel);
    return toPixels(width, height, bytes);
}

ovtrace::PixelImage toPixels(int width, int height, const QList<char>& bytes) {
    ovtrace::PixelImage image(width, height, ovtrace::Channels::All);
    for (int y = 0; y < height; ++y)
        std::copy_n(bytes.begin() + y * image.rowBytes(), image.rowBytes(), image.row(y));
    return image;
}

QList<char> toBytes(const ovtrace::PixelImage& image) {
    QList<char> bytes;
    for (int y = 0; y < image.height; ++y) {
        for (int x = 0; x < image.width; ++x) {
            const char* stored = image.row(y) + x * image.pixelBytes();
            switch (image.channels) {
            case ovtrace::Channels::Grey:
                bytes.append({stored[0], stored[0], stored[0], 127});
                break;
            case ovtrace::Channels::Opaque:
                bytes.append({stored[0], stored[1], stored[2], 127});
                break;
            case ovtrace::Channels::All:
                bytes.append({stored[0], stored[1], stored[2], stored[3]});
                break;
            }
        }
    }
    return bytes;
}
