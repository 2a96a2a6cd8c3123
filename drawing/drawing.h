#pragma once

#include "geometry/pathlist.h"

#include <QColor>
#include <QImage>
#include <QList>
#include <QSize>
#include <QString>
#include <QTransform>

#include <cmath>
#include <optional>

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

/// What an image is turned into.
enum class Method {
    Outlines,   ///< the tracer's outlines of colour regions, each by itself
    Regions,    ///< a map of regions with shared boundaries
    Centerlines ///< the middle lines of strokes
};

/// A path as a part of a ring.
struct PathUse {
    qsizetype path; ///< index into Drawing::paths
    bool backwards; ///< run from its end to its start
};

/// A closed run of paths, each of which starts where the one before it ends.
struct Ring {
    qsizetype firstUse; ///< index into Drawing::uses
    qsizetype count;
};

enum class ShapeKind : std::uint8_t {
    Outline, ///< one ring of the engine, to be painted in its place of the list
    Region,  ///< of a map: rings share their paths with those of the regions beside them
    Text,    ///< a letter, or a part of one, beside strokes
    Solid    ///< a filled area beside strokes
};

/// A filled area: what lies inside its first ring and outside the others, its holes. The first ring
/// runs counter-clockwise and holes run clockwise, but for outlines, which run as the engine
/// has them.
struct Shape {
    ShapeKind kind;
    int color;           ///< index into Drawing::palette
    qsizetype firstRing; ///< index into Drawing::rings
    qsizetype ringCount;
    qsizetype enclosing; ///< the region that it lies in a hole of; -1 for none
};

enum class StrokeKind : std::uint8_t { Line, Dashed, Hatch };

/// A line with a width along a path.
struct Stroke {
    StrokeKind kind;
    int color;       ///< index into Drawing::palette
    qsizetype path;  ///< index into Drawing::paths; closed when it ends where it starts
    double width;    ///< in pixels
    int widthClass;  ///< index into Drawing::widths
    int dashPattern; ///< index into Drawing::dashPatterns; -1 for none
    int startNode;   ///< indices into Drawing::nodes of the places where it meets others;
    int endNode;     ///< -1 for a free end
};

/// The result of tracing one image.
///
/// Plain values in lists that copies share, so that a drawing goes cheaply from one thread to
/// another. Drawing coordinates: one unit a pixel, y up, the image's lower left corner at 0, 0.
struct Drawing {
    QString title; ///< the image's name without folder and ending
    QSize size;    ///< of the image, in pixels
    Method method = Method::Outlines;
    QList<QColor> palette;

    PathList paths;
    QList<PathUse> uses;
    QList<Ring> rings;
    QList<Shape> shapes;               ///< enclosing regions come before those that they enclose
    QList<Stroke> strokes;             ///< on top of the shapes
    QList<double> widths;              ///< in pixels, rising: classes that strokes were sorted into
    QList<QList<double>> dashPatterns; ///< lengths in pixels of dash, gap, dash, gap ...
    QList<QPointF> nodes;              ///< where boundaries or strokes meet
    QString message;                   ///< what the tracer has to say when it found nothing

    /// The side of a pixel, when a size or a resolution was asked for.
    std::optional<double> pixelMillimetres;
    /// The same as the image's file says it, when it does.
    std::optional<double> filePixelMillimetres;
    Unit unit = Unit::Pixel; ///< of formats whose coordinates are free
    double modelScale = 1.0; ///< what a length on paper stands for in such formats
    /// From drawing coordinates to the world's, which such formats have then.
    std::optional<QTransform> world;
    QString crs; ///< the system of world coordinates; empty when it is not known

    QImage image; ///< what was traced, kept for those who compare

    bool isEmpty() const {
        return shapes.isEmpty() && strokes.isEmpty();
    }

    /// From drawing coordinates to those of formats whose coordinates are free.
    QTransform placement() const {
        return world.value_or(QTransform::fromScale(unitsPerPixel(), unitsPerPixel()));
    }

    /// What a length in pixels is in those coordinates.
    double unitsPerPixel() const {
        if (world)
            return std::sqrt(std::abs(world->determinant()));
        return unit == Unit::Pixel
                   ? 1.0
                   : pixelMillimetres.value_or(1.0) * modelScale / millimetresPer(unit);
    }

    /// The pieces of a ring, one after another.
    std::vector<PathPiece> piecesOf(const Ring& ring) const;
    /// The first ring of a shape.
    const Ring& outerRing(const Shape& shape) const {
        return rings[shape.firstRing];
    }
    std::span<const Ring> ringsOf(const Shape& shape) const {
        return {rings.constData() + shape.firstRing, static_cast<std::size_t>(shape.ringCount)};
    }

    /// Appends a shape whose only ring is the last path.
    void appendShapeOfLastPath(ShapeKind kind, int color);
};

/// The drawing without the shapes and strokes of some colours, by their indices into the palette.
/// The palette itself stays.
Drawing withoutColors(const Drawing& drawing, const QList<int>& colors);
