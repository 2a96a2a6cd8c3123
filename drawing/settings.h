#pragma once

#include "drawing.h"

#include <QMap>
#include <QRect>

#include <optional>

/// How an image is handed to the tracer of outlines, and with which options.
enum class Mode {
    Color, ///< as it is, in colour
    Bw,    ///< black and white by lightness, palette images too
    Raw    ///< the engine's own defaults and the image as read
};

/// Values of a tracer's options.
using EngineValues = QMap<QString, double>;

/// What decides about the result of one image.
struct TraceSettings {
    Method method = Method::Outlines;
    Mode mode = Mode::Color;
    EngineValues values; ///< over the tracer's own defaults, by the keys of its options
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
    bool isStrict = false; ///< whether a file that ends too early is an error
    qint64 largestPixels = 400'000'000;
};

enum class StatisticsForm { None, Table, Json };
