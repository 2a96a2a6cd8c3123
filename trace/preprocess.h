#pragma once

#include "options.h"

class QImage;

namespace ovtrace {

/// When "monochrome" is above 0, makes every pixel opaque white or black by its HSL lightness.
///
/// White needs "usebrightness" on and a lightness strictly above "brightnessthreshold"; alpha has
/// no effect. An image whose format takes no pixel colours (1 bit, palette) stays as it is. The
/// options are read with readOption(), the last four only when "monochrome" is on.
void preprocess(QImage& image, OptionMap& options);

} // namespace ovtrace
