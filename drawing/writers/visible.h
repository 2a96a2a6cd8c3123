#pragma once

#include "../drawing.h"
#include "writeroptions.h"

/// The colour that covers most of the image's rim, as an index into the palette; -1 for none.
int backgroundColor(const Drawing& drawing);

/// The drawing without what the options leave out.
Drawing visibleParts(const Drawing& drawing, const WriterOptions& options);
