#include "plainjoining.h"

#include <algorithm>
#include <cmath>

namespace ovtrace {
namespace {

class PlainJoiner {
public:
    PlainJoiner(const ChainModel& model, std::span<const Sample> samples,
                std::span<const Sample> near)
        : samples(samples), near(near), closed(model.closed) {
        std::copy_if(model.carriers.begin(), model.carriers.end(), std::back_inserter(carriers),
                     [this](const Carrier& carrier) { return isSupported(carrier); });
    }

    std::vector<Piece> run(std::optional<Point> start, std::optional<Point> end) {
        if (carriers.empty() || (!closed && (!start || !end)))
            return {};
        std::vector<Gap> gaps;
        gaps.push_back(closed ? gapBetween(carriers.back(), carriers.front())
                              : gapBefore(carriers.front(), *start));
        for (std::size_t i = 1; i < carriers.size(); ++i)
            gaps.push_back(gapBetween(carriers[i - 1], carriers[i]));
        gaps.push_back(closed ? gaps.front() : gapBehind(carriers.back(), *end));
        if (!closed)
            append(gaps.front());
        for (std::size_t i = 0; i < carriers.size(); ++i) {
            if (gaps[i].arrive != gaps[i + 1].leave)
                appendPieces(carriers[i], gaps[i].arrive, gaps[i + 1].leave, pieces);
            append(gaps[i + 1]);
        }
        return std::move(pieces);
    }

private:
    /// The way from one carrier to the next.
    struct Gap {
        Point leave;
        Point arrive;
        std::vector<Point> between;
    };

    std::int64_t count() const {
        return static_cast<std::int64_t>(samples.size());
    }
    std::size_t wrapped(std::int64_t i) const {
        return static_cast<std::size_t>((i % count() + count()) % count());
    }
    Point at(std::int64_t i) const {
        return samples[wrapped(i)].at;
    }

    /// Whether two more places than a carrier has parameters are known to a tenth of a pixel.
    bool isSupported(const Carrier& carrier) const {
        constexpr double Exact = 0.1;
        const int fewest = carrier.isLine() ? 4 : 5;
        const std::int64_t last =
            carrier.last >= carrier.first ? carrier.last : carrier.last + count();
        int exact = 0;
        for (std::int64_t i = carrier.first; i <= last; ++i) {
            const Sample& sample = samples[wrapped(i)];
            exact += int(!sample.loose && sample.sigma < Exact);
        }
        return exact >= fewest;
    }

    std::vector<Point> placesFrom(std::int64_t first, std::int64_t number) const {
        std::vector<Point> places;
        for (std::int64_t i = 0; i < number; ++i)
            places.push_back(near[wrapped(first + i)].at);
        return places;
    }
    Gap gapBefore(const Carrier& first, Point start) const {
        if (first.first == 0)
            return {start, start, {}};
        return {start, projected(first, at(first.first)), placesFrom(0, first.first)};
    }
    Gap gapBehind(const Carrier& last, Point end) const {
        const std::int64_t behind = last.last + 1;
        if (behind == count())
            return {end, end, {}};
        return {projected(last, at(last.last)), end, placesFrom(behind, count() - behind)};
    }
    Gap gapBetween(const Carrier& a, const Carrier& b) const {
        const auto number = static_cast<std::int64_t>(wrapped(std::int64_t(b.first) - a.last - 1));
        if (const auto corner = cornerOf(a, b, number))
            return {*corner, *corner, {}};
        return {projected(a, at(a.last)), projected(b, at(b.first)),
                placesFrom(std::int64_t(a.last) + 1, number)};
    }
    /// Where two carriers meet, if the `number` of places between them lie along them.
    std::optional<Point> cornerOf(const Carrier& a, const Carrier& b, std::int64_t number) const {
        constexpr std::int64_t MostBetween = 3;
        constexpr double Farthest = 1.5; // pixels
        constexpr double Beside = 0.5;   // pixels: places cut corners
        if (number > MostBetween)
            return std::nullopt;
        for (std::int64_t i = 1; i <= number; ++i) {
            const Point place = at(a.last + i);
            if (std::min(std::fabs(signedDistance(a, place)), std::fabs(signedDistance(b, place))) >
                Beside)
                return std::nullopt;
        }
        const Point middle = (at(a.last) + at(b.first)) * 0.5;
        std::optional<Point> corner;
        double least = Farthest;
        for (const Point place : meetings(a, b)) {
            if (distance(place, middle) > least)
                continue;
            least = distance(place, middle);
            corner = place;
        }
        return corner;
    }

    void append(const Gap& gap) {
        Point from = gap.leave;
        const auto go = [&](Point to) {
            if (from != to)
                pieces.push_back(linePiece(from, to));
            from = to;
        };
        for (const Point place : gap.between)
            go(place);
        go(gap.arrive);
    }

    std::span<const Sample> samples;
    std::span<const Sample> near;
    bool closed;
    std::vector<Carrier> carriers;
    std::vector<Piece> pieces;
};

} // namespace

std::vector<Piece> joinPlainly(const ChainModel& model, std::span<const Sample> samples,
                               std::span<const Sample> near, std::optional<Point> start,
                               std::optional<Point> end) {
    return PlainJoiner(model, samples, near).run(start, end);
}

} // namespace ovtrace
