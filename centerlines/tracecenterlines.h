#pragma once

#include "optionnames.h"
#include "traceexport.h"

#include <QColor>
#include <QList>
#include <QMap>
#include <QString>
#include <QStringList>

#include <ovpolyline.h>

class OvTraceProgress;
class QImage;

/// A place in drawing coordinates: one unit a pixel of the image, the origin at the outer corner of
/// its lower left pixel, y up. The middle of that pixel is (0.5, 0.5).
struct OvCenterlinePoint {
    double x = 0.0;
    double y = 0.0;

    friend bool operator==(const OvCenterlinePoint& a, const OvCenterlinePoint& b) {
        return a.x == b.x && a.y == b.y;
    }
};

/// One stroke of the pen: its middle line and its width.
///
/// Which fields count depends on `shape`; the others are zero or empty.
struct OvCenterlineStroke {
    enum class Shape {
        Line,     ///< from `start` to `end`
        Arc,      ///< from `start` to `end` about `center`, see `bulge`
        Circle,   ///< `center` and `radius`
        Ellipse,  ///< a whole one: `center`, `axis`, `radius` and `minorRadius`
        Polyline, ///< `points`; `start` and `end` repeat its first and last
    };
    enum class Kind {
        Line,   ///< a stroke by itself
        Dashed, ///< a line, arc or circle of dashes, from the first one's start to the last one's
                ///< end
        Hatch,  ///< one line of a hatching
    };

    Shape shape = Shape::Line;
    Kind kind = Kind::Line;
    OvCenterlinePoint start;
    OvCenterlinePoint end;
    OvCenterlinePoint center;
    /// Radius of an arc or a circle, greater radius of an ellipse.
    double radius = 0.0;
    double minorRadius = 0.0;
    /// Unit vector along the greater radius of an ellipse.
    OvCenterlinePoint axis;
    /// Of an arc: the tangent of a quarter of its angle, above 0 when it runs counter-clockwise
    /// from `start` to `end` (as in DXF).
    double bulge = 0.0;
    QList<OvCenterlinePoint> points;
    /// Width of the stroke in pixels: that of its class.
    double width = 0.0;
    /// Index into OvCenterlines::widths.
    int widthClass = 0;
    /// Lengths in pixels of dash, gap, dash, gap... of one period; empty unless `kind` is Dashed.
    QList<double> dashes;
    /// Index into OvCenterlines::colors.
    int color = 0;
    /// Indices into OvCenterlines::nodes of the two ends; -1 at an end that meets nothing.
    int startNode = -1;
    int endNode = -1;
};

/// Ink that is no stroke: its outline.
struct OvCenterlineArea {
    enum class Kind {
        Text,  ///< a character, or a part of one
        Solid, ///< a filled area: an arrow head, a dot, a column
    };

    Kind kind = Kind::Solid;
    /// Closed rings without a repeated last point, at least three points each; the even-odd rule
    /// tells inside from outside. Outer rings run counter-clockwise, holes clockwise.
    QList<QList<OvCenterlinePoint>> rings;
    /// Index into OvCenterlines::colors.
    int color = 0;
};

/// What a trace of centre lines found, as plain values in drawing coordinates.
struct OvCenterlines {
    /// Width and height of the image in pixels.
    int width = 0;
    int height = 0;
    QList<OvCenterlineStroke> strokes;
    QList<OvCenterlineArea> areas;
    /// Places where strokes meet. Each end of a stroke that names a node equals it to the last
    /// digit; a stroke that runs on through a node does not name it.
    QList<OvCenterlinePoint> nodes;
    /// The classes of width that strokes were sorted into, in pixels, rising.
    QList<double> widths;
    /// Colours of the ink, the most used first; one black where the image has no colours.
    QList<QRgb> colors;
    /// A sentence for the user when the image holds no drawing (only noise, say); else empty.
    QString message;
};

/// Turns the image of a line drawing into the lines, arcs and circles that it was drawn with.
///
/// Ink is measured in grey against the paper around it; an image with light lines on dark paper is
/// taken as it is. Results do not depend on the platform: the same image gives the same bytes.
/// Options are set by name, see docs/centerlines.md.
///
/// Works on the caller's thread alone; one object serves one thread at a time.
class OVTRACE_EXPORT OvTraceCenterlines {
public:
    OvTraceCenterlines();
    OvTraceCenterlines(const OvTraceCenterlines& other);
    OvTraceCenterlines& operator=(const OvTraceCenterlines& other);
    virtual ~OvTraceCenterlines();

    /// Stores `value` under `key`. Nothing is validated; unknown keys are kept and never read.
    void setOption(const QString& key, double value);

    /// The value stored under `key`; 0 for a key without one.
    double getOption(const QString& key) const;
    /// All values that are stored, by key.
    QMap<QString, double> getOptions() const;
    /// The keys that are read: a key that is none of these has no effect.
    static QStringList optionNames();

    /// Names who is told of the progress of traces and may stop them; null for nobody. The object
    /// is not owned and must live as long as it is set. A copy of the tracer has the same one.
    void setProgress(OvTraceProgress* progress);

    /// Traces an image. A null or empty image, and a trace that was stopped, give no strokes, no
    /// areas and no message.
    OvCenterlines trace(const QImage& image);

    /// The strokes and areas as a host draws them: a polyline for each stroke, with a bulge for
    /// each arc and its width as start and end width of each vertex, then one closed polyline
    /// without width for each ring of each area. A circle is two half circles; an ellipse is
    /// a closed run of arcs.
    static QList<OvPolyline> polylines(const OvCenterlines& centerlines);

private:
    QMap<QString, double> options;
    OvTraceProgress* progress = nullptr;
};
