#include "underlay.h"

#include "../geometry/vectors.h"
#include "reach.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace {

/// How exactly boundaries are looked at to find how far a region may reach, in pixels.
constexpr double GridTolerance = 0.1;

} // namespace

Underlay::Underlay(const Drawing& drawing)
    : drawing(drawing), sides(drawing.paths.size()), grid(drawing.size, FarthestReach) {
    findSides();
    sortShapes();
    findOpenHoles();
    fillGrid();
}

void Underlay::findSides() {
    for (qsizetype i = 0; i < drawing.shapes.size(); ++i) {
        if (drawing.shapes[i].kind != ShapeKind::Region)
            continue;
        for (const Ring& ring : drawing.ringsOf(drawing.shapes[i])) {
            for (qsizetype k = ring.firstUse; k < ring.firstUse + ring.count; ++k) {
                // A region lies on the left of its rings.
                const PathUse& use = drawing.uses[k];
                (use.backwards ? sides[use.path].right : sides[use.path].left) = i;
            }
        }
    }
}

void Underlay::sortShapes() {
    QList<double> areas;
    for (const Shape& shape : drawing.shapes) {
        const bool isRegion = shape.kind == ShapeKind::Region;
        areas.append(isRegion ? signedArea(drawing.piecesOf(drawing.outerRing(shape))) : 0.0);
    }
    shapeOrder.resize(drawing.shapes.size());
    std::iota(shapeOrder.begin(), shapeOrder.end(), 0);
    std::stable_sort(shapeOrder.begin(), shapeOrder.end(),
                     [&](qsizetype a, qsizetype b) { return areas[a] > areas[b]; });
    ranks.resize(drawing.shapes.size());
    for (qsizetype i = 0; i < shapeOrder.size(); ++i)
        ranks[shapeOrder[i]] = static_cast<int>(i);
}

int Underlay::rankOf(qsizetype shape) const {
    if (shape < 0 || drawing.palette[drawing.shapes[shape].color].alpha() != 255)
        return -1;
    return ranks[shape];
}

void Underlay::findOpenHoles() {
    // Regions that share a boundary within one hole make a group, which is open when one of them
    // is, or lies beside nothing, or has an open hole itself. Deeper regions have higher indices.
    QList<qsizetype> groups(drawing.shapes.size());
    std::iota(groups.begin(), groups.end(), 0);
    const auto groupOf = [&](qsizetype shape) {
        while (groups[shape] != shape)
            shape = groups[shape] = groups[groups[shape]];
        return shape;
    };
    QList<bool> isOpen(drawing.shapes.size(), false);
    for (const Sides& side : sides) {
        const bool hasBoth = side.left >= 0 && side.right >= 0;
        if (hasBoth && drawing.shapes[side.left].enclosing == drawing.shapes[side.right].enclosing)
            groups[groupOf(side.left)] = groupOf(side.right);
    }
    QList<bool> openGroups(drawing.shapes.size(), false);
    for (const Sides& side : sides) {
        for (const qsizetype shape : {side.left, side.right}) {
            if (shape >= 0 && (std::min(side.left, side.right) < 0 || rankOf(shape) < 0))
                openGroups[groupOf(shape)] = true;
        }
    }
    openHoles.resize(drawing.rings.size());
    for (qsizetype i = drawing.shapes.size() - 1; i >= 0; --i) {
        const Shape& shape = drawing.shapes[i];
        for (qsizetype r = shape.firstRing + 1; r < shape.firstRing + shape.ringCount; ++r) {
            const Ring& hole = drawing.rings[r];
            for (qsizetype k = hole.firstUse; k < hole.firstUse + hole.count; ++k) {
                const qsizetype inside = neighbour(drawing.uses[k]);
                if (inside < 0 || openGroups[groupOf(inside)])
                    openHoles[r] = true;
            }
            if (openHoles[r])
                openGroups[groupOf(i)] = true;
        }
    }
}

void Underlay::fillGrid() {
    for (qsizetype i = 0; i < drawing.paths.size(); ++i) {
        if (sides[i].left < 0 && sides[i].right < 0)
            continue;
        const int rank = std::min(rankOf(sides[i].left), rankOf(sides[i].right));
        const std::vector<QPointF> points = flattened(drawing.paths.pieces(i), GridTolerance);
        for (std::size_t k = 1; k < points.size(); ++k)
            grid.add(points[k - 1], points[k], rank);
    }
    grid.sort();
}

std::vector<std::vector<PathPiece>> Underlay::rings(qsizetype index) const {
    const Shape& shape = drawing.shapes[index];
    std::vector<std::vector<PathPiece>> result;
    const bool canReach = shape.kind == ShapeKind::Region && rankOf(index) >= 0;
    for (qsizetype r = shape.firstRing; r < shape.firstRing + shape.ringCount; ++r) {
        const bool isHole = r > shape.firstRing;
        if (!canReach)
            result.push_back(drawing.piecesOf(drawing.rings[r]));
        else if (!isHole || openHoles[r])
            result.push_back(reachingRing(drawing.rings[r], ranks[index]));
    }
    return result;
}

std::vector<PathPiece> Underlay::reachingRing(const Ring& ring, int rank) const {
    std::vector<RingPiece> pieces;
    for (qsizetype k = ring.firstUse; k < ring.firstUse + ring.count; ++k) {
        const PathUse& use = drawing.uses[k];
        std::vector<PathPiece> own;
        drawing.paths.appendPieces(use.path, use.backwards, own);
        const bool reaches = rankOf(neighbour(use)) > rank;
        for (const PathPiece& piece : own)
            pieces.push_back({piece, reaches});
    }
    return withReach(std::move(pieces), [&](QPointF point) { return grid.clearance(point, rank); });
}
