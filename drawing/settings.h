#pragma once

#include "drawing.h"
#include "worldfile.h"

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
    Method method = Method::Regions;
    Mode mode = Mode::Color;
    EngineValues values; ///< over the tracer's own defaults, by the keys of its options
    QList<QColor> palette;
};

/// The size of the drawing on paper, as far as it was asked for.
struct SizeRequest {
    std::optional<double> dotsPerInch;
    bool dotsFromFile = false;
    std::optional<double> widthMillimetres; ///< with a height: a box to fit it into
    std::optional<double> heightMillimetres;
    std::optional<Unit> unit;
    double modelScale = 1.0; ///< what a length on paper stands for: 100 at a scale of 1:100
    QString crs;             ///< the system of world coordinates; empty when it was not named
};

/// How an image file is read.
struct InputRequest {
    int page = 1;
    QRect crop; ///< in pixels; null for all of the image
    std::optional<QColor> background;
    EngineValues preparation; ///< of what is done before tracing, by the keys of its options
    bool isStrict = false;    ///< whether a file that ends too early is an error
    qint64 largestPixels = 400'000'000;
    int together = 1; ///< how many processes trace at the same time and share the memory
    std::optional<WorldNumbers> world; ///< where the image lies
    bool usesWorldFile = false;        ///< without `world`, the file beside the image says it
};

enum class StatisticsForm { None, Table, Json };
