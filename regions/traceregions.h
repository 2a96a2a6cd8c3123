#pragma once

#include "optionnames.h"
#include "regions/regionmap.h"
#include "traceexport.h"

#include <QList>
#include <QMap>
#include <QString>
#include <QStringList>

#include <ovpolyline.h>

class OvTraceProgress;
class QImage;

/// A ring of a region as a host draws it.
struct OvRegionOutline {
    /// Closed: it ends in the point that it starts in. Lines and arcs are vertices (the bulge of an
    /// arc is at the vertex where it starts), cubic curves are splines of degree 3. Drawing
    /// coordinates: one unit a pixel, the origin at the lower-left corner of the image, y up.
    OvPolyline polyline;
    int layer = 0;  ///< index into the map's palette
    int region = 0; ///< index into the map's regions
    bool hole = false;
};

/// Turns raster images into maps of plain-coloured areas with exact shared boundaries.
///
/// What an anti-aliased pixel says about the area that each colour covers in it decides where the
/// boundaries lie, to a hundredth of a pixel in clean images. Options are set by name, see
/// docs/regions.md. A trace depends on its image, the options and the palette alone: the same bytes
/// on every platform, and nothing is kept from one trace to the next.
///
/// Works on the caller's thread alone; one object serves one thread at a time.
class OVTRACE_EXPORT OvTraceRegions {
public:
    OvTraceRegions();
    OvTraceRegions(const OvTraceRegions& other);
    OvTraceRegions& operator=(const OvTraceRegions& other);
    virtual ~OvTraceRegions();

    /// Stores `value` under `key`. Nothing is validated; unknown keys are kept and never read.
    void setOption(const QString& key, double value);

    /// The value stored under `key`; 0 for a key without one.
    double getOption(const QString& key) const;
    /// All values that are stored, by key.
    QMap<QString, double> getOptions() const;
    /// The keys that are read: a key that is none of these has no effect.
    static QStringList optionNames();

    /// Sets the colours that the next trace uses, and no others; an empty list makes it find them
    /// in the image. Colours are not premultiplied.
    void setPalette(const QList<QRgb>& colors);

    /// What learns of the progress of the traces and may stop them. Not owned; may be null.
    void setProgress(OvTraceProgress* newProgress);

    /// The areas of `image`, whatever its format. A null or empty image gives an empty map, a
    /// stopped trace as well. Throws std::bad_alloc when there is no room.
    ovtrace::RegionMap trace(const QImage& image) const;

    /// The rings of a map: each region's outer ring and then its holes, regions in their order.
    static QList<OvRegionOutline> outlines(const ovtrace::RegionMap& map);

private:
    QMap<QString, double> options;
    QList<QRgb> palette;
    OvTraceProgress* progress = nullptr;
};
