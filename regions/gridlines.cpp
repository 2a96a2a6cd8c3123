#include "gridlines.h"

#include <vector>

namespace ovtrace {
namespace {

/// Counts the lines of each colour, and their pixels.
class LineCount {
public:
    /// A run that goes on from pixel to pixel.
    struct Run {
        QRgb color = 0;
        QRgb ground = 0;
        std::uint32_t length = 0;
    };

    /// The next pixel beside a run, and the two on its sides.
    void add(Run& run, QRgb color, QRgb before, QRgb behind) {
        const bool isLine = before == behind && before != color;
        if (isLine && run.length > 0 && run.color == color && run.ground == before) {
            ++run.length;
            return;
        }
        end(run);
        if (isLine)
            run = {color, before, 1};
    }
    void end(Run& run) {
        // A flat edge of a shape is seldom as long in one row.
        constexpr std::uint32_t Shortest = 16;
        if (run.length >= Shortest) {
            lines.add(run.color);
            pixels.add(run.color, run.length);
        }
        run.length = 0;
    }
    ColorCounts ofMany() const {
        constexpr std::uint32_t Many = 3;
        ColorCounts many;
        for (std::size_t i = 0; i < lines.entries().size(); ++i) {
            if (lines.entries()[i].count >= Many)
                many.add(lines.entries()[i].color, pixels.entries()[i].count);
        }
        return many;
    }

private:
    ColorCounts lines;
    ColorCounts pixels; ///< in the same order
};

} // namespace

ColorCounts findLineColors(const PixelView& image) {
    LineCount count;
    std::vector<LineCount::Run> columns(static_cast<std::size_t>(image.width));
    for (int y = 0; y < image.height; ++y) {
        const QRgb* row = image.row(y);
        for (int x = 1; x + 1 < image.width; ++x)
            count.add(columns[static_cast<std::size_t>(x)], row[x], row[x - 1], row[x + 1]);
        if (y == 0 || y + 1 == image.height)
            continue;
        const QRgb* above = image.row(y - 1);
        const QRgb* below = image.row(y + 1);
        LineCount::Run run;
        for (int x = 0; x < image.width; ++x)
            count.add(run, row[x], above[x], below[x]);
        count.end(run);
    }
    for (LineCount::Run& run : columns)
        count.end(run);
    return count.ofMany();
}

} // namespace ovtrace
