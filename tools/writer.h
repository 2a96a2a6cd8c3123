#pragma once

#include <QColor>
#include <QList>
#include <QSize>

#include <ovpolyline.h>

class QIODevice;

/// The result of tracing one image.
struct Drawing {
    QSize size;            ///< of the image, in pixels
    QList<QColor> palette; ///< by layer
    QList<OvPolyline>
        polylines;     ///< drawing coordinates: y up, the image's lower left corner at 0, 0
    QList<int> layers; ///< of the polylines
};

/// Turns a drawing into one file format.
class Writer {
public:
    virtual ~Writer() = default;

    virtual void write(const Drawing& drawing, QIODevice& device) const = 0;
    /// Whether several drawings may follow one another in one file.
    virtual bool takesSeveral() const = 0;
};
