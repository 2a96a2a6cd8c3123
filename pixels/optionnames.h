#pragma once

#include <QString>

// The names of the tracers' options, for setOption() and getOption(): a typing error in one of
// these does not compile. What they mean and their ranges: docs/options.md, regions.md,
// centerlines.md.

namespace ovtrace {

/// Options of OvTraceBitmap.
namespace option {

inline constexpr QLatin1String Monochrome("monochrome");
inline constexpr QLatin1String NumberOfColors("numberofcolors");
inline constexpr QLatin1String MinColorRatio("mincolorratio");
inline constexpr QLatin1String ColorQuantCycles("colorquantcycles");
inline constexpr QLatin1String ColorSampling("colorsampling");
inline constexpr QLatin1String BlurRadius("blurradius");
inline constexpr QLatin1String BlurDelta("blurdelta");
inline constexpr QLatin1String PathOmit("pathomit");
inline constexpr QLatin1String LineTolerance("ltres");
inline constexpr QLatin1String CurveTolerance("qtres");
inline constexpr QLatin1String AlphaThreshold("alphathreshold");
inline constexpr QLatin1String BrightnessThreshold("brightnessthreshold");
inline constexpr QLatin1String UseAlpha("usealpha");
inline constexpr QLatin1String UseBrightness("usebrightness");

} // namespace option

/// Options of OvTraceRegions.
namespace regionoption {

inline constexpr QLatin1String Colors("colors");
inline constexpr QLatin1String Tolerance("tolerance");
inline constexpr QLatin1String Speck("speck");
inline constexpr QLatin1String Fit("fit");
inline constexpr QLatin1String Cubics("cubics");
inline constexpr QLatin1String Light("light");

} // namespace regionoption

/// Options of OvTraceCenterlines.
namespace centerlineoption {

inline constexpr QLatin1String InkThreshold("inkthreshold");
inline constexpr QLatin1String SpeckArea("speckarea");
inline constexpr QLatin1String TextSize("textsize");

} // namespace centerlineoption

} // namespace ovtrace
