#pragma once

#include "writer.h"

#include <optional>

/// The layers in the order of their first outlines, when the drawing can be painted layer by layer
/// and looks the same; otherwise nothing.
///
/// Outlines whose boxes meet in a coarse raster count as overlapping.
std::optional<QList<int>> layerOrder(const Drawing& drawing);
