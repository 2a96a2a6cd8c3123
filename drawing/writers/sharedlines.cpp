#include "sharedlines.h"

#include "../geometry/vectors.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <utility>

namespace {

/// About the length of an edge, in pixels.
constexpr double UsualEdge = 2.0;
/// By how much a deviation becomes smaller, and the one, in pixels, at which curves are known not
/// to meet.
constexpr double Finer = 4.0;
constexpr double Finest = 0.01;

} // namespace

SharedLines::SharedLines(const Drawing& drawing, const Options& options)
    : drawing(drawing), options(options), placement(drawing.placement()) {
    const auto count = static_cast<std::size_t>(drawing.paths.size());
    used.assign(count, false);
    level.assign(count, 0);
    exact.assign(count, false);
    lines.resize(count);
    for (const PathUse& use : drawing.uses)
        used[static_cast<std::size_t>(use.path)] = true;
    std::set<std::size_t> changed;
    for (std::size_t path = 0; path < count; ++path) {
        if (used[path])
            changed.insert(path);
    }
    while (!changed.empty()) {
        for (const std::size_t path : changed)
            lines[path] = rounded(path);
        std::set<std::size_t> paths = meeting();
        const bool rebuildAll = refine(paths);
        if (!rebuildAll) {
            changed = std::move(paths);
            continue;
        }
        for (std::size_t path = 0; path < count; ++path) {
            if (used[path])
                changed.insert(path);
        }
    }
}

double SharedLines::deviationOf(std::size_t path) const {
    return std::max(options.deviation / std::pow(Finer, level[path]),
                    std::min(options.deviation, Finest));
}

/// The corners of a path with all their digits.
Corners SharedLines::places(std::size_t path) const {
    Corners corners =
        flattened(drawing.paths.pieces(static_cast<qsizetype>(path)), deviationOf(path));
    for (QPointF& corner : corners) {
        corner = placement.map(
            QPointF(std::clamp(corner.x(), 0.0, static_cast<double>(drawing.size.width())),
                    std::clamp(corner.y(), 0.0, static_cast<double>(drawing.size.height()))));
    }
    return corners;
}

Corners SharedLines::rounded(std::size_t path) const {
    Corners corners = places(path);
    if (!options.steps || exact[path])
        return corners;
    const double steps = *options.steps;
    const auto round = [steps](QPointF place) {
        return QPointF(std::round(place.x() * steps) / steps,
                       std::round(place.y() * steps) / steps);
    };
    for (QPointF& corner : corners) {
        const bool isEnd = &corner == &corners.front() || &corner == &corners.back();
        if (!isEnd || exactEnds.count(corner) == 0)
            corner = round(corner);
    }
    return corners;
}

/// The paths that meet others, or themselves, elsewhere than at their ends.
std::set<std::size_t> SharedLines::meeting() const {
    const double cell = UsualEdge * drawing.unitsPerPixel();
    std::set<std::size_t> paths = Noding(cell).meetingLines(lines);
    addSameEdges(paths);
    if (options.steps)
        addFallenTogether(paths);
    return paths;
}

/// Adds the paths that have an edge in common: their curves have come to one line.
void SharedLines::addSameEdges(std::set<std::size_t>& paths) const {
    std::map<Step, std::size_t, ByStart> edges;
    for (std::size_t path = 0; path < lines.size(); ++path) {
        for (std::size_t i = 1; i < lines[path].size(); ++i) {
            Step edge{lines[path][i - 1], lines[path][i]};
            if (ByPlace()(edge.second, edge.first))
                std::swap(edge.first, edge.second);
            const auto [other, isNew] = edges.insert({edge, path});
            if (isNew)
                continue;
            paths.insert(path);
            paths.insert(other->second);
        }
    }
}

/// Adds the paths with corners that have come to one place by rounding.
void SharedLines::addFallenTogether(std::set<std::size_t>& paths) const {
    struct Corner {
        QPointF place;
        QPointF before;
        std::size_t path;
    };
    std::vector<Corner> corners;
    for (std::size_t path = 0; path < lines.size(); ++path) {
        if (!used[path])
            continue;
        const Corners before = places(path);
        for (std::size_t i = 0; i < before.size(); ++i)
            corners.push_back({lines[path][i], before[i], path});
    }
    std::sort(corners.begin(), corners.end(),
              [](const Corner& a, const Corner& b) { return ByPlace()(a.place, b.place); });
    for (std::size_t i = 1; i < corners.size(); ++i) {
        const Corner& a = corners[i - 1];
        const Corner& b = corners[i];
        if (isSame(a.place, b.place) && !isSame(a.before, b.before)) {
            paths.insert(a.path);
            paths.insert(b.path);
        }
    }
}

/// Takes more pieces, or more digits, for those of the paths that can have them, and the others out
/// of them; returns whether ends have changed, which other paths share.
bool SharedLines::refine(std::set<std::size_t>& paths) {
    bool endsChange = false;
    std::erase_if(paths, [&](std::size_t path) {
        if (deviationOf(path) > Finest) {
            ++level[path];
            return false;
        }
        if (!options.steps || exact[path])
            return true;
        exact[path] = true;
        const Corners corners = places(path);
        exactEnds.insert(corners.front());
        exactEnds.insert(corners.back());
        endsChange = true;
        return false;
    });
    return endsChange;
}
