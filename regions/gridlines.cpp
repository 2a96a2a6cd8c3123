#include "gridlines.h"

#include <algorithm>
#include <cstdlib>
#include <vector>

namespace ovtrace {
namespace {

/// What one pixel has across a line of one or two pixels on a ground.
struct Crossing {
    QRgb first = 0;
    QRgb second = 0; ///< the ground's where the line is one pixel wide
    QRgb ground = 0;

    bool operator==(const Crossing& other) const = default;
};

/// A line that goes on from pixel to pixel.
struct Run {
    Crossing crossing;
    std::uint32_t length = 0;
};

/// Calls visit(run) for every line that is straight along the pixels and longer than flat edges of
/// shapes usually are.
template <typename Visit> class Runs {
public:
    explicit Runs(const Visit& visit) : visit(visit) {
    }
    /// The next pixel beside a run.
    void add(Run& run, bool isLine, const Crossing& crossing) {
        if (isLine && run.length > 0 && run.crossing == crossing) {
            ++run.length;
            return;
        }
        end(run);
        if (isLine)
            run = {crossing, 1};
    }
    void end(Run& run) {
        constexpr std::uint32_t Shortest = 16;
        if (run.length >= Shortest)
            visit(run);
        run.length = 0;
    }

private:
    const Visit& visit;
};

/// Lines of `Width` pixels, one or two, along rows and columns.
template <int Width, typename Visit> void forEachLine(const PixelView& image, const Visit& visit) {
    Runs<Visit> runs(visit);
    const auto add = [&runs](Run& run, QRgb before, QRgb first, QRgb last, QRgb behind) {
        runs.add(run, before == behind && first != before && last != before,
                 {first, Width == 1 ? before : last, before});
    };
    std::vector<Run> columns(static_cast<std::size_t>(image.width));
    for (int y = 0; y < image.height; ++y) {
        const QRgb* row = image.row(y);
        for (int x = 1; x + Width < image.width; ++x)
            add(columns[static_cast<std::size_t>(x)], row[x - 1], row[x], row[x + Width - 1],
                row[x + Width]);
        if (y == 0 || y + Width >= image.height)
            continue;
        const QRgb* above = image.row(y - 1);
        const QRgb* last = image.row(y + Width - 1);
        const QRgb* below = image.row(y + Width);
        Run run;
        for (int x = 0; x < image.width; ++x)
            add(run, above[x], row[x], last[x], below[x]);
        runs.end(run);
    }
    for (Run& run : columns)
        runs.end(run);
}

/// Counts the lines of each colour, and their pixels.
class LineCount {
public:
    void add(const Run& run) {
        lines.add(run.crossing.first);
        pixels.add(run.crossing.first, run.length);
        halves.resize(lines.entries().size());
    }
    bool hasMany() const {
        return std::any_of(lines.entries().begin(), lines.entries().end(), isMany);
    }
    /// A line of two pixels, which may be one of those between two rows.
    void addHalves(const Crossing& crossing) {
        for (std::size_t i = 0; i < halves.size(); ++i)
            halves[i] += std::uint32_t(isSum(crossing, lines.entries()[i].color));
    }
    ColorCounts ofMany() const {
        ColorCounts many;
        for (std::size_t i = 0; i < halves.size(); ++i) {
            const ColorCounts::Entry& line = lines.entries()[i];
            if (isMany(line) && halves[i] * 2 < line.count)
                many.add(line.color, pixels.entries()[i].count);
        }
        return many;
    }

private:
    static bool isMany(const ColorCounts::Entry& line) {
        constexpr std::uint32_t Many = 3;
        return line.count >= Many;
    }
    /// Whether two pixels together differ from the ground as much as one of `color` does.
    static bool isSum(const Crossing& crossing, QRgb color) {
        constexpr int Rounding = 2; // steps of a channel
        const auto isNear = [&](int (*channel)(QRgb)) {
            return std::abs(channel(crossing.first) + channel(crossing.second) -
                            channel(crossing.ground) - channel(color)) <= Rounding;
        };
        return isNear(qRed) && isNear(qGreen) && isNear(qBlue) && isNear(qAlpha);
    }

    ColorCounts lines;
    ColorCounts pixels;                ///< in the same order
    std::vector<std::uint32_t> halves; ///< lines of two pixels, in the same order
};

} // namespace

ColorCounts findLineColors(const PixelView& image) {
    LineCount count;
    forEachLine<1>(image, [&count](const Run& run) { count.add(run); });
    if (count.hasMany())
        forEachLine<2>(image, [&count](const Run& run) { count.addHalves(run.crossing); });
    return count.ofMany();
}

} // namespace ovtrace
