#pragma once

#include "../drawing.h"

#include <QByteArray>

/// The start of a feature collection, with its system of coordinates, up to the list of features.
///
/// Readers take longitude and latitude for granted where nothing is said, so that a drawing in
/// pixels or millimetres says that it has no system at all.
QByteArray geoJsonHead(const Drawing& drawing);
