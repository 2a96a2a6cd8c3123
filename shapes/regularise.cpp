#include "shapes/regularise.h"

#include <algorithm>
#include <array>

namespace ovtrace {

namespace {

/// How firmly the samples hold a line's direction: the added squared error is this times the
/// squared sine of the angle that it turns.
double firmness(const Carrier& line) {
    const PowerMeans means = line.support.aboutMean();
    return line.support.weight() * (means.xx + means.yy);
}

/// Turns the line into the direction (of length 1; either sense) when that adds little enough.
bool turn(Carrier& line, Point direction, double allowed) {
    const double sine = cross(line.direction, direction);
    if (!(sine * sine * firmness(line) <= allowed))
        return false;
    line.direction = dot(line.direction, direction) < 0.0 ? -direction : direction;
    line.at = line.support.mean();
    line.error = line.support.lineError(line.at, line.direction);
    return true;
}

bool alignToAxes(Carrier& line, double allowed) {
    const double half = std::sqrt(0.5);
    const std::array<Point, 4> directions{{{1.0, 0.0}, {0.0, 1.0}, {half, half}, {half, -half}}};
    return std::any_of(directions.begin(), directions.end(),
                       [&](Point direction) { return turn(line, direction, allowed); });
}

/// A line's direction within a quarter of the circle, for comparing parallel and perpendicular
/// ones.
struct QuarterDirection {
    Carrier* line = nullptr;
    Point direction; ///< x > 0, y >= 0
    bool turned = false;
    double firmness = 0.0;
    /// Grows with the angle.
    [[nodiscard]] double order() const {
        return direction.y / (direction.x + direction.y);
    }
};

QuarterDirection quarterDirection(Carrier& line) {
    QuarterDirection result{&line, line.direction, false, firmness(line)};
    // At most three quarter turns.
    for (int k = 0; k < 3 && !(result.direction.x > 0.0 && result.direction.y >= 0.0); ++k) {
        result.direction = turnedQuarter(result.direction);
        result.turned = !result.turned;
    }
    return result;
}

/// The common direction of a group: the sum, weighted by what holds each.
Point common(std::span<const QuarterDirection> group) {
    Point sum;
    for (const QuarterDirection& member : group)
        sum += member.direction * member.firmness;
    return unit(sum);
}

void turnGroup(std::span<const QuarterDirection> group, double allowed) {
    if (group.size() < 2)
        return;
    const Point direction = common(group);
    for (const QuarterDirection& member : group)
        turn(*member.line, member.turned ? turnedQuarter(direction) : direction, allowed);
}

/// Groups of lines whose directions differ by no more than their doubts, in the order of the angle.
void makeParallel(ChainModel& model, double allowed) {
    std::vector<QuarterDirection> lines;
    for (Carrier& carrier : model.carriers)
        if (carrier.isLine() && !carrier.support.isEmpty() && !alignToAxes(carrier, allowed))
            lines.push_back(quarterDirection(carrier));
    std::stable_sort(
        lines.begin(), lines.end(),
        [](const QuarterDirection& a, const QuarterDirection& b) { return a.order() < b.order(); });
    std::size_t start = 0;
    for (std::size_t k = 1; k <= lines.size(); ++k) {
        if (k < lines.size()) {
            const double sine = cross(lines[k - 1].direction, lines[k].direction);
            const double variance = 1.0 / lines[k - 1].firmness + 1.0 / lines[k].firmness;
            if (sine * sine <= allowed * variance)
                continue;
        }
        turnGroup(std::span(lines).subspan(start, k - start), allowed);
        start = k;
    }
}

/// The variance of a whole circle's radius; its centre has twice that in each coordinate.
double variance(const Carrier& circle) {
    return 1.0 / circle.support.weight();
}

/// Gives the circle another centre or radius when that adds little enough.
bool change(Carrier& circle, Point centre, double radius, double allowed) {
    const double error = circle.support.circleError(centre, radius);
    if (!(error <= circle.error + allowed))
        return false;
    circle.at = centre;
    circle.radius = radius;
    circle.error = error;
    return true;
}

/// Calls `same` for each run of circles, sorted by `value`, whose neighbours differ by less than
/// their doubts.
template <typename Value, typename Same>
void forRuns(std::vector<Carrier*>& circles, double allowed, Value value, Same same) {
    std::stable_sort(circles.begin(), circles.end(),
                     [&](const Carrier* a, const Carrier* b) { return value(*a) < value(*b); });
    std::size_t start = 0;
    for (std::size_t k = 1; k <= circles.size(); ++k) {
        if (k < circles.size()) {
            const double apart = value(*circles[k]) - value(*circles[k - 1]);
            const double spread = 2.0 * (variance(*circles[k]) + variance(*circles[k - 1]));
            if (apart * apart <= allowed * spread)
                continue;
        }
        if (k - start > 1)
            same(std::span(circles).subspan(start, k - start));
        start = k;
    }
}

void makeConcentric(std::span<Carrier*> circles, double allowed) {
    Point sum;
    double weight = 0.0;
    for (const Carrier* circle : circles) {
        sum += circle->at * circle->support.weight();
        weight += circle->support.weight();
    }
    for (Carrier* circle : circles)
        change(*circle, sum / weight, circle->radius, allowed);
}

void makeEqual(std::span<Carrier*> circles, double allowed) {
    double sum = 0.0;
    double weight = 0.0;
    for (const Carrier* circle : circles) {
        sum += circle->radius * circle->support.weight();
        weight += circle->support.weight();
    }
    for (Carrier* circle : circles)
        change(*circle, circle->at, sum / weight, allowed);
}

void makeCirclesRegular(std::span<ChainModel> models, double allowed) {
    std::vector<Carrier*> circles;
    for (ChainModel& model : models)
        if (model.isCircle && !model.carriers.front().support.isEmpty())
            circles.push_back(&model.carriers.front());
    forRuns(
        circles, allowed, [](const Carrier& circle) { return circle.radius; },
        [&](std::span<Carrier*> same) { makeEqual(same, allowed); });
    // The same in x, and among those the same in y.
    forRuns(
        circles, allowed, [](const Carrier& circle) { return circle.at.x; },
        [&](std::span<Carrier*> column) {
            std::vector<Carrier*> members(column.begin(), column.end());
            forRuns(
                members, allowed, [](const Carrier& circle) { return circle.at.y; },
                [&](std::span<Carrier*> same) { makeConcentric(same, allowed); });
        });
}

} // namespace

void regularise(std::span<ChainModel> models, double allowed) {
    for (ChainModel& model : models)
        makeParallel(model, allowed);
    makeCirclesRegular(models, allowed);
}

} // namespace ovtrace
