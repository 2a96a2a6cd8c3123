#pragma once

#include "../drawing.h"
#include "../geometry/noding.h"
#include "../geometry/planarorder.h"

#include <QTransform>

#include <optional>
#include <set>
#include <vector>

/// The paths that a drawing's areas share, as lines of straight pieces in the coordinates of a
/// file: both areas beside a path have the same corners.
///
/// Curves that do not meet can do so as straight pieces, or when their places are rounded. Such
/// paths have more pieces than the deviation asks for, and places with all their digits.
class SharedLines {
public:
    struct Options {
        double deviation = 0.05;     ///< of straight pieces, in pixels
        std::optional<double> steps; ///< of a unit of the file, to which places are rounded
    };
    SharedLines(const Drawing& drawing, const Options& options);

    /// From the start of the path to its end.
    const Corners& line(qsizetype path) const {
        return lines[static_cast<std::size_t>(path)];
    }

private:
    double deviationOf(std::size_t path) const;
    Corners places(std::size_t path) const;
    Corners rounded(std::size_t path) const;
    std::set<std::size_t> meeting() const;
    void addSameEdges(std::set<std::size_t>& paths) const;
    void addFallenTogether(std::set<std::size_t>& paths) const;
    bool refine(std::set<std::size_t>& paths);

    const Drawing& drawing;
    Options options;
    QTransform placement;
    std::vector<bool> used;
    std::vector<int> level;  ///< how often a path's deviation has been divided
    std::vector<bool> exact; ///< paths whose places are not rounded
    std::set<QPointF, ByPlace> exactEnds;
    std::vector<Corners> lines;
};
