#pragma once

namespace ovtrace {

/// Bits of a node's type: which of the four cells around it have the layer's colour.
enum NodeBit : int { UpperLeft = 1, UpperRight = 2, LowerRight = 4, LowerLeft = 8 };

/// Directions of a walk along cell edges, x to the right, y downward.
enum Direction : int { Right = 0, Up = 1, Left = 2, Down = 3 };

} // namespace ovtrace
