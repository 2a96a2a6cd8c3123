#pragma once

#include <QColor>
#include <QImage>
#include <QList>
#include <QSize>
#include <QString>

#include <cmath>
#include <optional>

#include <ovpolyline.h>

/// A unit of length of the drawing.
enum class Unit { Pixel, Millimetre, Centimetre, Metre, Inch, Foot, Point };

/// Millimetres in a unit, which is not the pixel.
constexpr double millimetresPer(Unit unit) {
    switch (unit) {
    case Unit::Centimetre:
        return 10.0;
    case Unit::Metre:
        return 1000.0;
    case Unit::Inch:
        return 25.4;
    case Unit::Foot:
        return 304.8;
    case Unit::Point:
        return 25.4 / 72.0;
    default:
        return 1.0;
    }
}

/// A colour's opacity 0..1, rounded to four digits.
inline double opacityOf(const QColor& color) {
    return std::round(color.alpha() / 255.0 * 10000.0) / 10000.0;
}

/// The result of tracing one image.
struct Drawing {
    QString title;         ///< the image's name without folder and ending
    QSize size;            ///< of the image, in pixels
    QList<QColor> palette; ///< by layer
    /// Drawing coordinates: one unit a pixel, y up, the image's lower left corner at 0, 0.
    QList<OvPolyline> polylines;
    QList<int> layers; ///< of the polylines

    /// The side of a pixel, when a size or a resolution was asked for.
    std::optional<double> pixelMillimetres;
    Unit unit = Unit::Pixel; ///< of formats whose coordinates are free

    QImage image; ///< what was traced, kept for those who compare

    /// What a length in pixels is in `unit`.
    double unitsPerPixel() const {
        return unit == Unit::Pixel ? 1.0 : pixelMillimetres.value_or(1.0) / millimetresPer(unit);
    }
};
