#pragma once

#include "imagedata.h"
#include "indexedimage.h"
#include "optionnames.h"
#include "traceexport.h"

#include <QList>
#include <QMap>
#include <QString>
#include <QStringList>

#include <memory>

#include <ovpolyline.h>

class OvTraceProgress;
class QImage;

namespace ovtrace {
class PixelImage;
class ProgressMeter;
struct QuantizedImage;
} // namespace ovtrace

/// Turns raster images into the outlines of their colour regions.
///
/// The outlines are closed polylines of straight pieces and quadratic splines in drawing
/// coordinates: one unit a pixel, the origin at the lower left corner of the image, y up. Options
/// are set by name, see docs/options.md. The palette that a trace ends with is where the next
/// one on the same object starts.
///
/// Works on the caller's thread alone; one object serves one thread at a time.
class OVTRACE_EXPORT OvTraceBitmap {
public:
    OvTraceBitmap();
    OvTraceBitmap(const OvTraceBitmap& other);
    OvTraceBitmap& operator=(const OvTraceBitmap& other);
    virtual ~OvTraceBitmap();

    /// Stores `value` under `key`. Nothing is validated; unknown keys are kept and never read.
    void setOption(const QString& key, double value);

    /// The value stored under `key`; 0 for a key without one.
    double getOption(const QString& key) const;
    /// All values that are stored, by key.
    QMap<QString, double> getOptions() const;
    /// The keys that are read: a key that is none of these has no effect.
    static QStringList optionNames();

    /// Sets the colours that the next trace starts from; an empty list makes it choose its own.
    ///
    /// A colour is four bytes red, green, blue, alpha, each the channel value minus 128: opaque
    /// black is -128, -128, -128, 127.
    void setPalette(const QList<QList<char>>& palette);

    /// The palette as it stands, in the encoding of setPalette().
    QList<QList<char>> getPalette() const;

    /// Traces an image. Returns the outlines in raster order of their start points, an outer
    /// region before those inside it; a null or empty image gives an empty list. Throws
    /// std::bad_alloc when memory ends.
    QList<OvPolyline> trace(const QImage& image);

    /// Traces an image file of any format that Qt reads; an unreadable one gives an empty list.
    QList<OvPolyline> trace(const QString& fileName);

    /// Lets `progress` follow the traces to come and stop them; null (as at first) stops that. It
    /// is not owned, and a copy of the tracer has the same.
    ///
    /// A trace that it stops, as one out of which an exception comes (std::bad_alloc, or one of
    /// `progress` itself), leaves the palette and the options as they were and no polyline layers.
    /// The random colours that it has drawn stay drawn: the sequence is that of the process.
    void setProgress(OvTraceProgress* progress);

    /// The palette index of each polyline of the list that the last trace returned.
    QList<int> getPolylineLayers() const;

    /// Turns the image to opaque black and white by lightness when "monochrome" is above 0. An
    /// image of 1 bit a pixel or with a colour table stays as it is.
    void preprocess(QImage& image);
    /// preprocess() on a deep copy of the image.
    QImage getPreprocessed(const QImage& image);

    /// Restarts the process-wide sequence of random colours, so that traces can be repeated.
    ///
    /// Every process starts as after seedRandom(1). On Windows the sequence is that of the C
    /// runtime's rand(), elsewhere the same numbers.
    static void seedRandom(unsigned seed);

private:
    friend class TraceBitmapProbe; ///< the tests' view of the members

    QList<OvPolyline> traceStages(const QImage& image, ovtrace::ProgressMeter& meter);
    void restore(const QList<QList<char>>& paletteBefore,
                 const QMap<QString, double>& optionsBefore);
    void colorquantization(const QImage& image, ovtrace::ProgressMeter& meter);

    QList<QList<char>> palette;
    QMap<QString, double> options;
    /// What the last trace found its outlines in, shared by copies.
    std::shared_ptr<const ovtrace::QuantizedImage> indexedImage;
    QList<int> polylineLayers;
    OvTraceProgress* progress = nullptr;
};
