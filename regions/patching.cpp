#include "patching.h"

#include "shapes/piece.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace ovtrace {
namespace {

/// Ranges that are no farther apart than so many steps become one.
constexpr std::size_t Gap = 2;

bool touches(const StepRange& range, std::size_t step) {
    return step + Gap >= range.first && step <= range.last + Gap;
}

/// A place on a curve.
struct CurvePlace {
    std::size_t piece = 0;
    double t = 0.0;
    Point at;
};

/// Places along the pieces, about half a pixel apart.
std::vector<CurvePlace> placesAlong(std::span<const Piece> pieces) {
    std::vector<CurvePlace> places{{0, 0.0, pieces.front().from}};
    for (std::size_t i = 0; i < pieces.size(); ++i) {
        const int count = std::max(1, static_cast<int>(std::ceil(lengthOf(pieces[i]) * 2.0)));
        for (int k = 1; k < count; ++k) {
            const double t = double(k) / count;
            places.push_back({i, t, pointAt(pieces[i], t)});
        }
        places.push_back({i, 1.0, pieces[i].to});
    }
    return places;
}

/// The same closed curve, beginning at the place nearest to `start`.
std::vector<Piece> rotated(std::vector<Piece> pieces, Point start) {
    const std::vector<CurvePlace> places = placesAlong(pieces);
    const auto nearest = std::min_element(
        places.begin(), places.end(), [start](const CurvePlace& a, const CurvePlace& b) {
            return lengthSquared(a.at - start) < lengthSquared(b.at - start);
        });
    const auto at = static_cast<std::ptrdiff_t>(nearest->piece);
    if (nearest->t > 0.0 && nearest->t < 1.0) {
        const auto [before, after] = split(pieces[nearest->piece], nearest->t);
        pieces[nearest->piece] = after;
        std::rotate(pieces.begin(), pieces.begin() + at, pieces.end());
        pieces.push_back(before);
    } else {
        const auto first = nearest->t > 0.0 ? at + 1 : at;
        std::rotate(pieces.begin(), pieces.begin() + first, pieces.end());
    }
    return pieces;
}

/// The part of a piece between two parameters, which lie at `from` and `to`.
Piece partOf(const Piece& piece, double start, double end, Point from, Point to) {
    if (piece.kind == PieceKind::Line)
        return linePiece(from, to);
    if (piece.kind == PieceKind::Arc)
        return arcPiece(from, to, bulgeAround(from, to, circleOf(piece).centre, piece.bulge));
    Piece part = piece;
    if (end < 1.0)
        part = split(part, end).first;
    if (start > 0.0)
        part = split(part, start / end).second;
    return withEnds(part, from, to);
}

bool goesStraightOn(const Piece& before, const Piece& after) {
    const Point one = before.to - before.from;
    const Point other = after.to - after.from;
    return before.kind == PieceKind::Line && after.kind == PieceKind::Line &&
           cross(one, other) == 0.0 && dot(one, other) > 0.0;
}

/// Lines that go straight on as one.
std::vector<Piece> joinedStraight(std::span<const Piece> pieces) {
    std::vector<Piece> result;
    for (const Piece& piece : pieces) {
        if (!result.empty() && goesStraightOn(result.back(), piece))
            result.back() = linePiece(result.back().from, piece.to);
        else
            result.push_back(piece);
    }
    return result;
}

class Patcher {
public:
    Patcher(std::span<const Piece> pieces, std::span<const Point> places, bool closed)
        : pieces(pieces), places(places), closed(closed), trail(placesAlong(pieces)) {
        align();
    }

    std::vector<Piece> run(std::span<const StepRange> ranges) {
        std::size_t reached = 0; // of the trail
        at = pieces.front().from;
        if (closed && ranges.front().first == 0)
            at = places.front();
        const Point start = at;
        for (const StepRange& range : ranges) {
            if (range.first > 0)
                appendCurve(reached, ofStep[range.first - 1]);
            for (std::size_t step = range.first; step <= range.last; ++step)
                appendLine(places[step]);
            reached = trail.size() - 1;
            if (range.last + 1 < places.size()) {
                reached = ofStep[range.last + 1];
                appendLine(trail[reached].at);
            }
        }
        appendCurve(reached, trail.size() - 1);
        appendLine(closed ? start : pieces.back().to);
        return std::move(result);
    }

private:
    /// Finds the place on the curve for each step: in their order, and near.
    void align() {
        constexpr std::size_t Ahead = 12; // places
        constexpr double PerPlace = 0.02; // square pixels: rather the next than one far ahead
        ofStep.reserve(places.size());
        std::size_t here = 0;
        for (const Point place : places) {
            double least = lengthSquared(trail[here].at - place);
            std::size_t best = here;
            for (std::size_t k = here + 1; k < trail.size() && k <= here + Ahead; ++k) {
                const double cost =
                    lengthSquared(trail[k].at - place) + PerPlace * double(k - here);
                if (cost < least) {
                    least = cost;
                    best = k;
                }
            }
            here = best;
            ofStep.push_back(here);
        }
    }

    void appendLine(Point to) {
        if (to != at)
            result.push_back(linePiece(at, to));
        at = to;
    }
    /// The curve from one place of the trail to another.
    void appendCurve(std::size_t from, std::size_t to) {
        if (to <= from)
            return;
        const CurvePlace& first = trail[from];
        const CurvePlace& last = trail[to];
        appendLine(first.at);
        for (std::size_t i = first.piece; i <= last.piece; ++i) {
            const double start = i == first.piece ? first.t : 0.0;
            const double end = i == last.piece ? last.t : 1.0;
            if (start >= end)
                continue;
            const Piece part =
                partOf(pieces[i], start, end, start > 0.0 ? first.at : pieces[i].from,
                       end < 1.0 ? last.at : pieces[i].to);
            result.push_back(part);
            at = part.to;
        }
    }

    std::span<const Piece> pieces;
    std::span<const Point> places;
    bool closed;
    std::vector<CurvePlace> trail;
    std::vector<std::size_t> ofStep; ///< into the trail
    std::vector<Piece> result;
    Point at;
};

} // namespace

bool PatchedSteps::contains(std::size_t step) const {
    return std::any_of(ranges.begin(), ranges.end(), [step](const StepRange& range) {
        return step >= range.first && step <= range.last;
    });
}

void PatchedSteps::widen(std::vector<std::size_t> steps, std::size_t stepCount, bool closed) {
    constexpr std::size_t Around = 2;
    constexpr std::size_t Short = 12; // steps that are not worth a curve
    std::vector<StepRange> wider;
    const auto insert = [&](const StepRange& range, std::size_t by) {
        if (closed && range.first < by)
            wider.push_back({stepCount - std::min(stepCount, by - range.first), stepCount - 1});
        if (closed && range.last + by >= stepCount)
            wider.push_back({0, std::min(range.last + by - stepCount, stepCount - 1)});
        wider.push_back(
            {range.first - std::min(range.first, by), std::min(range.last + by, stepCount - 1)});
    };
    for (const StepRange& range : ranges) {
        const auto isOf = [&range](std::size_t step) { return touches(range, step); };
        const bool any = std::any_of(steps.begin(), steps.end(), isOf);
        insert(range, any ? range.last - range.first + 1 : 0);
        std::erase_if(steps, isOf);
    }
    for (const std::size_t step : steps)
        insert({step, step}, Around);
    std::sort(wider.begin(), wider.end(), [](const StepRange& a, const StepRange& b) {
        return a.first != b.first ? a.first < b.first : a.last < b.last;
    });
    ranges.clear();
    std::size_t covered = 0;
    for (const StepRange& range : wider) {
        if (!ranges.empty() && range.first <= ranges.back().last + Gap)
            ranges.back().last = std::max(ranges.back().last, range.last);
        else
            ranges.push_back(range);
    }
    for (const StepRange& range : ranges)
        covered += range.last - range.first + 1;
    if (stepCount <= Short || covered + Around >= stepCount)
        addWhole(stepCount);
}

StepFinder::StepFinder(const CrackMap& cracks, const CrackChain& chain) {
    GridPoint p = chain.start;
    entries.reserve(chain.stepCount);
    for (std::size_t i = 0; i < chain.stepCount; ++i) {
        const GridPoint next = p + cracks.steps[chain.firstStep + i];
        const Point along{double(next.x - p.x), double(next.y - p.y)};
        const Point centre{(p.x + next.x) / 2.0, (p.y + next.y) / 2.0};
        entries.push_back({{std::min(p.x, next.x), std::min(p.y, next.y)}, centre, along, i});
        p = next;
    }
    std::sort(entries.begin(), entries.end(), comesFirst);
}

bool StepFinder::comesFirst(const Entry& a, const Entry& b) {
    if (a.pixel.y != b.pixel.y)
        return a.pixel.y < b.pixel.y;
    return a.pixel.x != b.pixel.x ? a.pixel.x < b.pixel.x : a.step < b.step;
}

std::size_t StepFinder::nearest(Point place, Point direction) const {
    constexpr int Reach = 3;            // pixels
    constexpr double MostAgainst = 0.5; // of the direction's length
    const int column = static_cast<int>(std::floor(place.x));
    const int row = static_cast<int>(std::floor(place.y));
    const double least = -MostAgainst * length(direction);
    std::size_t found = None;
    double nearest = 0.0;
    for (int y = row - Reach; y <= row + Reach; ++y) {
        auto entry = std::lower_bound(entries.begin(), entries.end(),
                                      Entry{{column - Reach, y}, {}, {}, 0}, comesFirst);
        for (; entry != entries.end() && entry->pixel.y == y && entry->pixel.x <= column + Reach;
             ++entry) {
            const double square = lengthSquared(entry->middle - place);
            if (dot(entry->along, direction) < least || (found != None && square >= nearest))
                continue;
            found = entry->step;
            nearest = square;
        }
    }
    return found;
}

std::vector<Piece> patched(std::vector<Piece> pieces, std::span<const Point> places,
                           std::span<const StepRange> ranges, bool closed) {
    if (closed)
        pieces = rotated(std::move(pieces), places.front());
    return joinedStraight(Patcher(pieces, places, closed).run(ranges));
}

std::vector<Piece> bentTo(std::vector<Piece> pieces, Point start, Point end) {
    constexpr double Bent = 3.0; // pixels
    const auto bendStart = [](std::vector<Piece>& curve, Point to) {
        const double size = lengthOf(curve.front());
        if (size > 2.0 * Bent) {
            const auto [before, after] = split(curve.front(), Bent / size);
            curve.front() = after;
            curve.insert(curve.begin(), before);
        }
        curve.front() = withEnds(curve.front(), to, curve.front().to);
    };
    bendStart(pieces, start);
    std::reverse(pieces.begin(), pieces.end());
    std::transform(pieces.begin(), pieces.end(), pieces.begin(), reversed);
    bendStart(pieces, end);
    std::reverse(pieces.begin(), pieces.end());
    std::transform(pieces.begin(), pieces.end(), pieces.begin(), reversed);
    return pieces;
}

} // namespace ovtrace
