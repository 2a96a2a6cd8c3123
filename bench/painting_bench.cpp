// How long pictures of drawings take to paint, filled and as an overlay, for patterns with many or
// long outlines and for a page of text. Prints nanoseconds of the processor a pixel, and how many
// times those of the page of the same size they are, as a Markdown table.
//
// Usage: painting_bench MEGAPIXELS...

#include "pictures.h"

#include <drawing/tracing.h>
#include <drawing/writers/picture.h>
#include <tests/support/drawnpicture.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <functional>
#include <random>
#include <string>
#include <vector>

namespace {

constexpr int Turns = 3;
constexpr int Line = 4; ///< the width of lines and gaps, in pixels

/// Teeth and gaps one pixel wide.
QImage comb(int side) {
    return drawn(side, [side](int x, int y) { return y < side / 100 || x % 2 == 0; });
}

/// A square spiral.
QImage spiral(int side) {
    return drawn(side, [side](int x, int y) {
        const int ring = std::min({x, y, side - 1 - x, side - 1 - y}) / Line;
        // On the diagonal below the upper left corner each turn passes into the next.
        const bool steps = x < side / 2 && y / Line == x / Line + 1 && y < side / 2;
        return (ring % 2 == 0) != steps;
    });
}

/// Walls of a maze without closed rooms: each cell opens to its right or upwards.
QImage maze(int side) {
    const int cells = side / (2 * Line);
    std::mt19937 draw(1);
    std::vector<bool> opensRight(static_cast<std::size_t>(cells + 1) *
                                 static_cast<std::size_t>(cells + 1));
    for (std::size_t i = 0; i < opensRight.size(); ++i)
        opensRight[i] = (draw() & 1U) != 0U;
    return drawn(side, [=](int x, int y) {
        const int column = x / Line;
        const int row = y / Line;
        if (column % 2 == 1 && row % 2 == 1)
            return false;
        if (column % 2 == 0 && row % 2 == 0)
            return true;
        // The cell to the left of a wall, or below it.
        const int cell = std::max(0, column - 1) / 2 + (row / 2) * cells;
        return opensRight[static_cast<std::size_t>(cell)] == (row % 2 == 0);
    });
}

/// Round dots, eight pixels apart.
QImage dots(int side) {
    return drawn(side, [](int x, int y) {
        const double dx = x % 8 - 3.5;
        const double dy = y % 8 - 3.5;
        return dx * dx + dy * dy < 9.0;
    });
}

/// Squares within one another.
QImage squares(int side) {
    return drawn(side, [side](int x, int y) {
        return std::min({x, y, side - 1 - x, side - 1 - y}) / Line % 2 == 0;
    });
}

QImage page(int side) {
    const QImage text = QImage(OVTRACE_SAMPLES "/text.png").convertToFormat(QImage::Format_RGB32);
    return tiled(text, qint64(side) * side);
}

struct Cost {
    double filled; ///< nanoseconds a pixel
    double overlay;
};

double nanosecondsAPixel(const Drawing& drawing,
                         const std::function<void(PicturePainter&)>& paint) {
    double least = HUGE_VAL;
    for (int turn = 0; turn < Turns; ++turn) {
        const std::clock_t start = std::clock();
        QImage picture(drawing.size, QImage::Format_ARGB32_Premultiplied);
        picture.fill(Qt::transparent);
        PicturePainter painter(picture, drawing, 1.0);
        paint(painter);
        least = std::min(least, static_cast<double>(std::clock() - start) * (1e9 / CLOCKS_PER_SEC));
    }
    return least / (static_cast<double>(drawing.size.width()) * drawing.size.height());
}

Cost costOf(const QImage& image) {
    InputImage input;
    input.image = image;
    TraceSettings settings;
    settings.values = {{"usebrightness", 1.0}};
    const Drawing drawing = traceImage(std::move(input), settings);
    return {nanosecondsAPixel(drawing, [](PicturePainter& painter) { painter.paintFilled(); }),
            nanosecondsAPixel(drawing, [](PicturePainter& painter) { painter.paintOverlay(); })};
}

} // namespace

int main(int argc, char* argv[]) {
    const std::vector<std::pair<std::string, QImage (*)(int)>> patterns{
        {"page", page}, {"comb", comb}, {"spiral", spiral},
        {"maze", maze}, {"dots", dots}, {"squares", squares}};
    std::printf("| picture | Mpx | filled, ns a pixel | page's | overlay, ns a pixel | page's |\n"
                "|---|---|---|---|---|---|\n");
    for (int i = 1; i < argc; ++i) {
        const double megapixels = std::atof(argv[i]);
        Cost first{};
        for (const auto& [name, pattern] : patterns) {
            const Cost cost = costOf(pattern(static_cast<int>(std::sqrt(megapixels * 1e6))));
            if (first.filled == 0.0)
                first = cost;
            std::printf("| %s | %g | %.1f | %.2f | %.1f | %.2f |\n", name.c_str(), megapixels,
                        cost.filled, cost.filled / first.filled, cost.overlay,
                        cost.overlay / first.overlay);
        }
    }
}
