#pragma once

#include "drawing.h"
#include "engineoptions.h"

#include <QRect>

#include <optional>

/// How an image is handed to the tracer, and with which options.
enum class Mode {
    Color, ///< as it is, in colour
    Bw,    ///< black and white by lightness, palette images too
    Raw    ///< the engine's own defaults and the image as read
};

/// What decides about the result of one image.
struct TraceSettings {
    Mode mode = Mode::Color;
    EngineValues values; ///< over the engine's own defaults
    QList<QColor> palette;
};

/// The size of the drawing, as far as it was asked for.
struct SizeRequest {
    std::optional<double> dotsPerInch;
    bool dotsFromFile = false;
    std::optional<double> widthMillimetres;
    std::optional<double> heightMillimetres;
    std::optional<Unit> unit;
};

/// How an image file is read.
struct InputRequest {
    int page = 1;
    QRect crop; ///< in pixels; null for all of the image
    std::optional<QColor> background;
    qint64 largestPixels = 400'000'000;
};

enum class StatisticsForm { None, Table, Json };
