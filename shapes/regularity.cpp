#include "shapes/regularity.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <iterator>
#include <limits>
#include <utility>
#include <vector>

namespace ovtrace {

namespace {

constexpr double infinite = std::numeric_limits<double>::infinity();

/// The one of the four quarter turns of `of` that is nearest to `direction`.
Point quarterTurnNear(Point of, Point direction) {
    Point best = of;
    Point turned = of;
    for (int k = 1; k < 4; ++k) {
        turned = turnedQuarter(turned);
        if (dot(turned, direction) > dot(best, direction))
            best = turned;
    }
    return best;
}

/// A direction that lines share but for quarter turns.
struct SharedDirection {
    Point along;
    double information = infinite; ///< 1 / variance of the angle; infinite for given directions
    int lines = 0;
};

class LineAlignment {
public:
    explicit LineAlignment(std::span<Carrier> carriers) : carriers_(carriers) {
        directions_.push_back({{1.0, 0.0}, infinite, 0});
        directions_.push_back({unit(Point{1.0, 1.0}), infinite, 0});
    }

    void run() {
        const std::vector<std::size_t> order = sureLines();
        std::vector<std::size_t> found;
        found.reserve(order.size());
        for (const std::size_t line : order)
            found.push_back(directionFor(carriers_[line]));
        std::vector<Point> wanted(carriers_.size()); // 0 where a line stays as it is
        for (std::size_t i = 0; i < order.size(); ++i) {
            const SharedDirection& shared = directions_[found[i]];
            if (std::isinf(shared.information) || shared.lines > 1)
                wanted[order[i]] = quarterTurnNear(shared.along, carriers_[order[i]].direction);
        }
        for (std::size_t i = 0; i < carriers_.size(); ++i)
            if (wanted[i] != Point{} && !runsOn(wanted, i))
                turn(carriers_[i], wanted[i]);
    }

private:
    /// Squared standard deviations.
    static constexpr double allowed_ = 4.0;

    static double informationOf(const Carrier& line) {
        const double sigma = endDirectionSigma(line);
        return 1.0 / (sigma * sigma);
    }
    /// The lines whose samples tell their direction, the surest first.
    [[nodiscard]] std::vector<std::size_t> sureLines() const {
        constexpr double least = 2500.0; // a standard deviation of .02, about a degree
        std::vector<std::size_t> order;
        for (std::size_t i = 0; i < carriers_.size(); ++i)
            if (carriers_[i].isLine() && !carriers_[i].support.isEmpty() &&
                informationOf(carriers_[i]) >= least)
                order.push_back(i);
        std::stable_sort(order.begin(), order.end(), [this](std::size_t a, std::size_t b) {
            return informationOf(carriers_[a]) > informationOf(carriers_[b]);
        });
        return order;
    }
    /// The shared direction that a line has, a new one where it has none of those.
    std::size_t directionFor(const Carrier& line) {
        const double information = informationOf(line);
        std::size_t best = directions_.size();
        double least = allowed_;
        for (std::size_t k = 0; k < directions_.size(); ++k) {
            const SharedDirection& shared = directions_[k];
            const double sine =
                cross(quarterTurnNear(shared.along, line.direction), line.direction);
            const double off = sine * sine / (1.0 / information + 1.0 / shared.information);
            if (off > least)
                continue;
            least = off;
            best = k;
        }
        if (best == directions_.size()) {
            directions_.push_back({line.direction, information, 1});
            return best;
        }
        SharedDirection& shared = directions_[best];
        ++shared.lines;
        if (!std::isinf(shared.information)) {
            shared.along = unit(shared.along * shared.information +
                                quarterTurnNear(line.direction, shared.along) * information);
            shared.information += information;
        }
        return best;
    }
    /// Whether a line beside this one would run in the very same direction: what bends there is
    /// seen, and parallel lines do not meet.
    [[nodiscard]] bool runsOn(const std::vector<Point>& wanted, std::size_t index) const {
        const std::size_t count = carriers_.size();
        return count > 1 && (wanted[(index + 1) % count] == wanted[index] ||
                             wanted[(index + count - 1) % count] == wanted[index]);
    }
    static void turn(Carrier& line, Point direction) {
        const double error = line.support.lineError(line.at, direction);
        if (error > line.error + allowed_)
            return;
        line.direction = direction;
        line.error = error;
    }

    std::span<Carrier> carriers_;
    std::vector<SharedDirection> directions_;
};

/// Squared standard deviations of one number, and of two, that chance exceeds once in 20 times.
constexpr double allowedOfOne = 3.84;
constexpr double allowedOfTwo = 5.99;

/// Of places spread evenly around a circle of these samples.
double radiusVariance(const Carrier& circle) {
    return 1.0 / circle.support.weight();
}
double centreVariance(const Carrier& circle) {
    return 2.0 / circle.support.weight();
}

/// Gives the circles of a group the weighted mean of their centres, those that it suits.
void shareCentre(std::span<Carrier* const> group) {
    Point sum;
    double weight = 0.0;
    for (const Carrier* circle : group) {
        sum += circle->at * circle->support.weight();
        weight += circle->support.weight();
    }
    const Point centre = sum / weight;
    for (Carrier* circle : group)
        if (lengthSquared(centre - circle->at) <= allowedOfTwo * centreVariance(*circle))
            circle->at = centre;
}

void matchCentres(std::vector<Carrier*> circles) {
    std::stable_sort(circles.begin(), circles.end(),
                     [](const Carrier* a, const Carrier* b) { return a->at.x < b->at.x; });
    constexpr double farthest = 0.5; // pixels: farther apart they are seen to be
    std::vector<bool> grouped(circles.size(), false);
    std::vector<Carrier*> group;
    for (std::size_t i = 0; i < circles.size(); ++i) {
        if (grouped[i])
            continue;
        const Point centre = circles[i]->at;
        group = {circles[i]};
        for (std::size_t k = i + 1; k < circles.size() && circles[k]->at.x - centre.x < farthest;
             ++k) {
            const double variance = centreVariance(*circles[i]) + centreVariance(*circles[k]);
            if (grouped[k] || lengthSquared(circles[k]->at - centre) >
                                  std::min(allowedOfTwo * variance, farthest * farthest))
                continue;
            grouped[k] = true;
            group.push_back(circles[k]);
        }
        if (group.size() > 1)
            shareCentre(group);
    }
}

/// Gives the circles of a group one radius, those that it suits.
void shareRadius(std::span<Carrier* const> group, double radius) {
    for (Carrier* circle : group) {
        const double off = radius - circle->radius;
        if (off * off <= allowedOfOne * radiusVariance(*circle))
            circle->radius = radius;
    }
}

void matchRadii(std::vector<Carrier*> circles) {
    std::stable_sort(circles.begin(), circles.end(),
                     [](const Carrier* a, const Carrier* b) { return a->radius < b->radius; });
    for (std::size_t i = 0; i < circles.size();) {
        double weight = circles[i]->support.weight();
        double radius = circles[i]->radius;
        std::size_t end = i + 1;
        for (; end < circles.size(); ++end) {
            const Carrier& next = *circles[end];
            const double off = next.radius - radius;
            if (off * off > allowedOfOne * (radiusVariance(next) + 1.0 / weight))
                break;
            const double own = next.support.weight();
            radius = (radius * weight + next.radius * own) / (weight + own);
            weight += own;
        }
        if (end > i + 1)
            shareRadius(std::span(circles).subspan(i, end - i), radius);
        i = end;
    }
}

} // namespace

void alignLines(std::span<Carrier> carriers) {
    LineAlignment(carriers).run();
}

void matchCircles(std::span<Carrier* const> circles) {
    std::vector<Carrier*> sure;
    std::copy_if(circles.begin(), circles.end(), std::back_inserter(sure),
                 [](const Carrier* circle) { return !circle->support.isEmpty(); });
    matchCentres(sure);
    matchRadii(std::move(sure));
}

} // namespace ovtrace
