#pragma once

#include "drawing.h"
#include "input.h"
#include "settings.h"

/// Fixes the size and unit of a drawing; `place` is what the image's files say. Throws FileError,
/// which names the file, when it should state a resolution and does not.
void setSize(Drawing& drawing, const QString& fileName, const ImagePlace& place,
             const SizeRequest& request);
