#pragma once

#include "traceexport.h"

#include <QImage>
#include <QMap>
#include <QString>

class OvTraceProgress;

/// An image that is better to trace.
struct OvPreparedImage {
    QImage image;
    /// By how much it was turned: the slope (dy/dx, y down) that its horizontal lines had before.
    /// The middle of the image stayed where it was, its size may have grown.
    double slope = 0.0;
};

/// Makes bad images better to trace: uneven light, yellowed paper, pages that were put down askew.
///
/// Every step is off until its option is set, and they are done in this order:
///
/// - `whiten` 1: the paper becomes white, colours keep their ratio to it;
/// - `deskew` 1: lines of text and of drawings become horizontal, if they are within 11 degrees;
/// - `threshold`: black and white; 0 to 255 is the brightness of the darkest channel up to which a
///   pixel is black, -2 finds one for the image (Otsu's method), -3 one for each place of it
///   (Sauvola's, on paper that was made white); -1, the default, leaves the colours.
///
/// The same bytes on every platform. Works on the caller's thread alone.
class OVTRACE_EXPORT OvPrepareImage {
public:
    OvPrepareImage();
    OvPrepareImage(const OvPrepareImage& other);
    OvPrepareImage& operator=(const OvPrepareImage& other);
    virtual ~OvPrepareImage();

    /// Stores `value` under `key`. Nothing is validated; unknown keys are kept and never read.
    void setOption(const QString& key, double value);

    /// What learns of the progress and may stop the work. Not owned; may be null.
    void setProgress(OvTraceProgress* newProgress);

    /// The image prepared; as it is when no step is on. A null image gives a null one, work that
    /// was stopped as well. Throws std::bad_alloc when there is no room.
    OvPreparedImage prepare(const QImage& image) const;

private:
    QMap<QString, double> options;
    OvTraceProgress* progress = nullptr;
};
