#pragma once

#include "inkmask.h"

namespace ovtrace {

/// What a small component looks like: a bar may be a dash, a ring a hole; letters are most often
/// neither.
enum class Form : std::uint8_t { Bar, Ring, Complex };

/// `strokeWidth` is the usual one, in pixels.
Form formOf(const InkComponents& all, const InkComponent& component, double strokeWidth);

/// Calls `visit(x, y)` with each pixel of a component.
template <typename Visit>
void forEachPixel(const InkComponents& all, const InkComponent& component, Visit visit) {
    for (std::uint32_t i = 0; i < component.runCount; ++i) {
        const InkRun& run = all.runs[component.firstRun + i];
        for (int x = run.begin; x < run.end; ++x)
            visit(x, run.y);
    }
}

/// One side of a component's box: from `begin` up to `end`.
struct Extent {
    int begin;
    int end;

    int length() const {
        return end - begin;
    }
};

/// The side of its box across a line of text that runs across the page, or up and down (`upright`):
/// its height.
Extent across(const InkComponent& c, bool upright);

/// Gap between characters of a word over the height of the higher one.
constexpr double GapOfSize = 0.45;
/// The same between words.
constexpr double GapOfWords = 0.75;
/// Height of a ring over that of the character beside it at most.
constexpr double MostOfRing = 1.1;

/// Whether two components may be neighbours in a line of text that runs across the page, or up and
/// down, no farther from each other than `gap` times the height of the higher one.
bool isInLine(const InkComponent& a, const InkComponent& b, bool upright, double gap);

/// Whether both stand on one line, `slack` pixels or a share of their height off at most: in one
/// that runs up or down feet may be on either side.
bool haveFeetInLine(const InkComponent& a, const InkComponent& b, bool upright, double slack);

} // namespace ovtrace
