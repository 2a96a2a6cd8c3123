#pragma once

#include <qrgb.h>

namespace ovtrace {

// The colours of test pictures.
constexpr QRgb White = 0xffffffffU;
constexpr QRgb Black = 0xff000000U;
constexpr QRgb Grey = 0xff808080U;
constexpr QRgb Red = 0xffe31a1cU;
constexpr QRgb Blue = 0xff1f78b4U;

} // namespace ovtrace
