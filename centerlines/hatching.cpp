#include "hatching.h"

#include "hatchrows.h"
#include "strokegrid.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace ovtrace {
namespace {

/// Lines at the side of a row that tell where the next one is.
constexpr std::size_t Telling = 8;
/// Steps along a line in pixels, and how many of them must lie in no other stroke's ink.
constexpr double Step = 0.5;
constexpr int FewestOwn = 2;
/// Ink over the usual one of the row from which a place is a part of a stroke.
constexpr double Inked = 0.5;
/// Widths of a stroke that its skeleton may end before a corner.
constexpr double Unjoined = 5.0;
/// Cosine beyond which strokes are the same line: 8 degrees.
constexpr double SameDirection = 0.99;

bool canBeHatch(const Stroke& stroke) {
    return !stroke.dropped && !stroke.closed && stroke.dashes.empty() && stroke.carrier.isLine();
}

/// Numbers of the strokes that satisfy a condition.
template <typename Condition>
std::vector<int> numbersOf(const std::vector<Stroke>& strokes, Condition condition) {
    std::vector<int> numbers;
    for (std::size_t i = 0; i < strokes.size(); ++i)
        if (condition(strokes[i]))
            numbers.push_back(static_cast<int>(i));
    return numbers;
}

/// Completes one row at a time.
class RowCompleter {
public:
    RowCompleter(std::vector<Stroke>& strokes, const InkLevels& ink)
        : strokes(strokes), ink(ink), grid(strokes, ink.width, ink.height),
          rowOf(strokes.size(), 0) {
    }

    void complete(const HatchRow& row) {
        frames.clear();
        ++number;
        for (const int i : row)
            rowOf[static_cast<std::size_t>(i)] = number;
        std::size_t framed = 0;
        for (const int i : row) {
            const int start = frameAt(i, 0);
            const int end = frameAt(i, 1);
            if (start < 0 || end < 0)
                continue;
            ++framed;
            frames.push_back(start);
            frames.push_back(end);
        }
        if (2 * framed < row.size())
            return;
        std::ranges::sort(frames);
        frames.erase(std::unique(frames.begin(), frames.end()), frames.end());
        for (const int i : row)
            at(i).hatch = true;
        HatchRow reversed(row.rbegin(), row.rend());
        goOn(row);
        goOn(reversed);
    }

private:
    /// Where the next line of a row must be.
    struct Prediction {
        Carrier carrier;
        Point outward; ///< of length 1, from the row to it
        double step = 0.0;
        double width = 0.0;
        double peak = 0.0;
        double reach = 0.0; ///< from carrier.at, along it
    };

    Stroke& at(int i) {
        return strokes[static_cast<std::size_t>(i)];
    }

    /// The stroke outside the row that line `i` runs into at its end `e`, or -1.
    int frameAt(int i, int e) {
        const Stroke& line = at(i);
        const Point end = line.ends[static_cast<std::size_t>(e)].at;
        const Point outward = outwardAt(line, e);
        grid.near(end, 12.0, around);
        int nearest = -1;
        double best = 2.0 * line.width + 6.0;
        for (const int j : around) {
            const Stroke& other = at(j);
            if (other.dropped || other.hatch || rowOf[static_cast<std::size_t>(j)] == number)
                continue;
            for (const Point& p : meetings(line.carrier, other.carrier)) {
                const double away = std::abs(dot(p - end, outward));
                if (away < best && covers(other, p, other.width + 1.0)) {
                    best = away;
                    nearest = j;
                }
            }
        }
        return nearest;
    }

    /// Adds lines beyond the last one of the row as long as their ink is there.
    void goOn(const HatchRow& row) {
        const Prediction first = predict(row);
        for (int ahead = 1; first.step > first.width; ++ahead) {
            Prediction next = first;
            next.carrier.at += first.outward * (first.step * ahead);
            if (!addAt(next))
                return;
        }
    }

    /// The last line of the row as its neighbours have it: distances fitted by least squares.
    Prediction predict(const HatchRow& row) {
        const std::size_t count = std::min(row.size(), Telling);
        const Stroke& last = at(row.back());
        Point direction;
        std::vector<double> widths;
        for (std::size_t k = 0; k < count; ++k) {
            const Stroke& line = at(row[row.size() - 1 - k]);
            const double sign =
                dot(line.carrier.direction, last.carrier.direction) < 0 ? -1.0 : 1.0;
            direction += line.carrier.direction * (sign * lengthOf(line));
            widths.push_back(line.width);
        }
        Prediction found;
        direction = unit(direction);
        const Point side = turnedQuarter(direction);
        const Point from = middle(last.start(), last.finish());
        // Offsets from the last line against numbers 0, -1, -2...
        const double mean = -(static_cast<double>(count) - 1.0) / 2.0;
        double offsets = 0.0;
        double products = 0.0;
        double squares = 0.0;
        for (std::size_t k = 0; k < count; ++k) {
            const Stroke& line = at(row[row.size() - 1 - k]);
            const double offset = dot(middle(line.start(), line.finish()) - from, side);
            const double number = -static_cast<double>(k) - mean;
            offsets += offset / static_cast<double>(count);
            products += number * offset;
            squares += number * number;
        }
        const double step = products / squares;
        found.carrier.at = from + side * (offsets - step * mean);
        found.carrier.direction = direction;
        found.outward = step < 0.0 ? -side : side;
        found.step = std::abs(step);
        std::ranges::nth_element(widths, widths.begin() + static_cast<std::ptrdiff_t>(count / 2));
        found.width = widths[count / 2];
        found.peak = last.peak;
        found.reach = lengthOf(last);
        return found;
    }

    bool addAt(const Prediction& line) {
        std::vector<double> places;
        for (const int f : frames)
            for (const Point& p : meetings(line.carrier, at(f).carrier)) {
                const double place = dot(p - line.carrier.at, line.carrier.direction);
                if (std::abs(place) < line.reach && covers(at(f), p, Unjoined * at(f).width))
                    places.push_back(place);
            }
        std::ranges::sort(places);
        for (std::size_t k = 0; k + 1 < places.size(); ++k)
            if (isInked(line, places[k], places[k + 1]))
                return add(line, places[k], places[k + 1]);
        return false;
    }

    bool isInFrame(Point p) {
        return std::ranges::any_of(frames, [&](int f) {
            return std::abs(signedDistance(at(f).carrier, p)) <= 0.5 * at(f).width + 0.25;
        });
    }

    /// Whether there is ink all along, of no frame in a part of it, and paper before it.
    bool isInked(const Prediction& line, double from, double to) {
        int own = 0;
        int paper = 0;
        const double least = Inked * line.peak;
        double d = from;
        while (d <= to) {
            const Point p = line.carrier.at + line.carrier.direction * d;
            d += Step;
            if (ink.sample(p.x, p.y) < least)
                return false;
            if (isInFrame(p))
                continue;
            ++own;
            const Point before = p - line.outward * (line.step / 2.0);
            paper += ink.sample(before.x, before.y) < least ? 1 : 0;
        }
        return own >= FewestOwn && 2 * paper >= own;
    }

    /// Adds the line unless it is known; what the skeleton made of its ink goes.
    bool add(const Prediction& line, double from, double to) {
        Stroke stroke;
        stroke.carrier = line.carrier;
        stroke.ends[0].at = line.carrier.at + line.carrier.direction * from;
        stroke.ends[1].at = line.carrier.at + line.carrier.direction * to;
        stroke.width = line.width;
        stroke.peak = line.peak;
        stroke.hatch = true;
        for (const Point& p : pointsAlong(stroke, StrokeGrid::Cell / 2.0)) {
            grid.near(p, 12.0, around);
            for (const int j : around) {
                if (at(j).dropped || std::ranges::find(frames, j) != frames.end())
                    continue;
                if (isSame(stroke, at(j)))
                    return false;
                if (isExplained(stroke, at(j)))
                    at(j).dropped = true;
            }
        }
        strokes.push_back(std::move(stroke));
        return true;
    }

    static bool isSame(const Stroke& stroke, const Stroke& other) {
        return other.carrier.isLine() && lengthOf(other) > 0.8 * lengthOf(stroke) &&
               std::abs(dot(stroke.carrier.direction, other.carrier.direction)) > SameDirection &&
               std::abs(signedDistance(stroke.carrier, middle(other.start(), other.finish()))) <
                   stroke.width / 2.0 + 0.5;
    }

    bool isExplained(const Stroke& stroke, const Stroke& other) {
        if (other.closed || other.hatch || lengthOf(other) > lengthOf(stroke) + 2.0 * stroke.width)
            return false;
        return allAlong(other, 1.0, [&](Point p) {
            return std::abs(signedDistance(stroke.carrier, p)) <= stroke.width / 2.0 + 0.75 ||
                   isInFrame(p);
        });
    }

    std::vector<Stroke>& strokes;
    const InkLevels& ink;
    StrokeGrid grid;
    std::vector<int> rowOf;  ///< number of the row that a stroke is part of; 0 for none
    int number = 0;          ///< of the row at hand
    std::vector<int> frames; ///< strokes that the row ends on
    std::vector<int> around;
};

} // namespace

void completeHatching(std::vector<Stroke>& strokes, const InkLevels& ink) {
    const std::vector<int> lines = numbersOf(strokes, canBeHatch);
    const std::vector<HatchRow> rows = findHatchRows(strokes, lines, ink.width, ink.height);
    RowCompleter completer(strokes, ink);
    for (const HatchRow& row : rows)
        completer.complete(row);
}

void markHatching(std::vector<Stroke>& strokes, const InkLevels& ink) {
    const std::vector<int> lines = numbersOf(strokes, [](const Stroke& stroke) {
        return canBeHatch(stroke) && stroke.ends[0].node >= 0 && stroke.ends[1].node >= 0;
    });
    for (Stroke& stroke : strokes)
        stroke.hatch = false;
    for (const HatchRow& row : findHatchRows(strokes, lines, ink.width, ink.height))
        for (const int i : row)
            strokes[static_cast<std::size_t>(i)].hatch = true;
}

} // namespace ovtrace
