#pragma once

#include "../geometry/pathpiece.h"

#include <functional>

/// How far a region reaches under those above it, in pixels: enough for a picture shown at half its
/// size, little enough to stay close to the boundary.
constexpr double FarthestReach = 3.0;

/// A piece of a ring, and whether the ring may be pushed outwards (to the right) along it.
struct RingPiece {
    PathPiece piece;
    bool reaches;
};

/// The ring with such pieces moved to their right by as much as `clearance` (the distance that is
/// free around a point) allows, and no farther than FarthestReach; it stays closed. Pieces that do
/// not reach are as they were, to the last digit.
std::vector<PathPiece> withReach(std::vector<RingPiece> ring,
                                 const std::function<double(QPointF)>& clearance);
