#pragma once

class QImage;

namespace ovtrace {

class Pace;

/// Makes the paper white: each channel is divided by that of the paper around, so that yellowed
/// paper and uneven light do not matter; what paper's noise leaves below white becomes white, too.
///
/// Colours keep their ratio to the paper, opacity stays. Solid areas stay as dark as they are to
/// the paper at their rim, up to about 400 pixels from it. An image that is dark for the most part
/// has no paper and comes back as it is, one of 1 bit as well. The result has 32 bits a pixel.
QImage whitened(const QImage& image, Pace& pace);

} // namespace ovtrace
