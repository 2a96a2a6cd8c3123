#include "chaincheck.h"

#include "shapes/piece.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace ovtrace {
namespace {

/// Points in the order of a chain, searched from the last one found on.
class Trail {
public:
    Trail(std::vector<Point> points, double near)
        : points(std::move(points)), closed(this->points.front() == this->points.back()),
          nearSquare(near * near) {
    }

    /// Whether a point of the trail is near to `place`, most likely one of the next.
    bool isNear(Point place) {
        advance(place);
        if (squareTo(at, place) <= nearSquare)
            return true;
        constexpr std::int64_t Behind = 16;
        constexpr std::int64_t Ahead = 48;
        return search(place, at - Behind, at + Ahead) || search(place, 0, count() - 1);
    }

private:
    std::int64_t count() const {
        return static_cast<std::int64_t>(points.size());
    }
    std::int64_t wrapped(std::int64_t i) const {
        return (i % count() + count()) % count();
    }
    double squareTo(std::int64_t i, Point place) const {
        return lengthSquared(points[static_cast<std::size_t>(i)] - place);
    }
    /// Goes on while that leads nearer.
    void advance(Point place) {
        double square = squareTo(at, place);
        while (closed || at + 1 < count()) {
            const double following = squareTo(wrapped(at + 1), place);
            if (following >= square)
                break;
            at = wrapped(at + 1);
            square = following;
        }
    }
    /// Goes to the point nearest to `place` of those from `first` to `last`, if it is near.
    bool search(Point place, std::int64_t first, std::int64_t last) {
        double least = nearSquare;
        std::int64_t found = -1;
        for (std::int64_t i = first; i <= last; ++i) {
            if (!closed && (i < 0 || i >= count()))
                continue;
            const double square = squareTo(wrapped(i), place);
            if (square <= least) {
                least = square;
                found = wrapped(i);
            }
        }
        if (found >= 0)
            at = found;
        return found >= 0;
    }

    std::vector<Point> points;
    bool closed;
    double nearSquare; ///< square pixels
    std::int64_t at = 0;
};

/// Pixels that a curve may keep from the polygon through its samples, which cuts corners and, where
/// all of them are rounded to pixels, follows the steps of the pixels.
double usualDistance(std::span<const Sample> samples) {
    constexpr double CutCorner = 0.7;
    constexpr double Step = 0.8;
    constexpr double RoundedSigma = 0.28;
    const bool rounded = std::all_of(samples.begin(), samples.end(), [](const Sample& sample) {
        return sample.sigma >= RoundedSigma;
    });
    return rounded ? CutCorner + Step : CutCorner;
}

/// The polygon through the samples, its points half a pixel apart.
std::vector<Point> polygonOf(std::span<const Sample> samples, bool closed) {
    std::vector<Point> points{samples.front().at};
    const auto append = [&points](Point to) {
        const Point from = points.back();
        const int count = std::max(1, static_cast<int>(std::ceil(distance(from, to) * 2.0)));
        for (int i = 1; i < count; ++i)
            points.push_back(from + (to - from) * (double(i) / count));
        points.push_back(to);
    };
    for (const Sample& sample : samples.subspan(1))
        append(sample.at);
    if (closed)
        append(samples.front().at);
    return points;
}

/// Places along the pieces, at most a pixel apart.
std::vector<Point> placesAlong(std::span<const Piece> pieces) {
    std::vector<Point> places{pieces.front().from};
    for (const Piece& piece : pieces) {
        // The parameter of wide arcs runs unevenly: twice as many as their length asks for.
        const int count = std::max(1, static_cast<int>(std::ceil(lengthOf(piece) * 2.0)));
        for (int i = 1; i <= count; ++i)
            places.push_back(i == count ? piece.to : pointAt(piece, double(i) / count));
    }
    return places;
}

/// Where a curve is led to its junctions, which others place.
struct Ends {
    Point first;
    Point last;
    bool closed;

    bool areNear(Point place) const {
        constexpr double Reach = 2.5; // pixels
        return !closed && (distance(place, first) < Reach || distance(place, last) < Reach);
    }
};

/// Whether what leads away from the trail is no more than a tip.
bool leadsNowhereElse(const std::vector<Point>& places, Trail polygon, const Ends& ends) {
    // Square pixels: as much as the labels of pixels covered by less than half leave out.
    constexpr double LargestTip = 2.0;
    constexpr double FarthestTip = 8.0;
    double area = 0.0;
    bool away = false;
    Point left;
    for (std::size_t i = 0; i < places.size(); ++i) {
        if (ends.areNear(places[i]) || polygon.isNear(places[i])) {
            away = false;
            continue;
        }
        if (!away) {
            away = true;
            area = 0.0;
            left = places[i];
        } else {
            area += cross(places[i - 1] - left, places[i] - left) / 2.0;
        }
        if (std::fabs(area) > LargestTip || distance(places[i], left) > FarthestTip)
            return false;
    }
    return true;
}

/// Whether every part of the polygon has a place of the curve near by.
bool leavesNothingOut(const std::vector<Point>& polygon, Trail places, const Ends& ends) {
    // In half pixels: beside a corner of the curve the polygon may run inside it.
    constexpr int MostMissed = 3;
    int missed = 0;
    for (const Point point : polygon) {
        missed = ends.areNear(point) || places.isNear(point) ? 0 : missed + 1;
        if (missed > MostMissed)
            return false;
    }
    return true;
}

} // namespace

bool followsSamples(std::span<const Piece> pieces, std::span<const Sample> samples, bool closed) {
    const std::vector<Point> polygon = polygonOf(samples, closed);
    // A piece many times as long as the polygon is wrong whatever its course.
    const double longest = 2.0 * (double(polygon.size()) + 8.0);
    for (const Piece& piece : pieces) {
        if (!(lengthOf(piece) <= longest))
            return false;
    }
    const std::vector<Point> places = placesAlong(pieces);
    const double usual = usualDistance(samples);
    const Ends ends{pieces.front().from, pieces.back().to, closed};
    return leadsNowhereElse(places, Trail(polygon, usual), ends) &&
           leavesNothingOut(polygon, Trail(places, usual), ends);
}

} // namespace ovtrace
