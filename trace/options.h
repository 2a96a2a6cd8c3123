#pragma once

#include <QMap>
#include <QString>

namespace ovtrace {

/// Option values by lower-case key.
using OptionMap = QMap<QString, double>;

/// The options that a new tracer has, with their defaults.
OptionMap defaultOptions();

/// The value of `key`. A key that is absent is inserted with 0.0, so that copies carry it too.
inline double readOption(OptionMap& options, QLatin1StringView key) {
    return options[QString(key)];
}

namespace option {

inline constexpr QLatin1StringView Monochrome("monochrome");
inline constexpr QLatin1StringView NumberOfColors("numberofcolors");
inline constexpr QLatin1StringView MinColorRatio("mincolorratio");
inline constexpr QLatin1StringView ColorQuantCycles("colorquantcycles");
inline constexpr QLatin1StringView ColorSampling("colorsampling");
inline constexpr QLatin1StringView BlurRadius("blurradius");
inline constexpr QLatin1StringView BlurDelta("blurdelta");
inline constexpr QLatin1StringView PathOmit("pathomit");
inline constexpr QLatin1StringView LineTolerance("ltres");
inline constexpr QLatin1StringView CurveTolerance("qtres");
inline constexpr QLatin1StringView AlphaThreshold("alphathreshold");
inline constexpr QLatin1StringView BrightnessThreshold("brightnessthreshold");
inline constexpr QLatin1StringView UseAlpha("usealpha");
inline constexpr QLatin1StringView UseBrightness("usebrightness");

} // namespace option
} // namespace ovtrace
