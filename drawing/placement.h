#pragma once

#include "geometry/pathpiece.h"

#include <QTransform>

/// The pieces in the coordinates that an affine transformation leads to. Arcs, circles and ellipses
/// stay what they are where it keeps angles, whatever way it turns; otherwise they become cubic
/// curves.
std::vector<PathPiece> placed(const std::vector<PathPiece>& pieces, const QTransform& placement);
