#pragma once

#include <indexgrid.h>
#include <tracebitmap.h>

/// The tests' view of a tracer's members.
class TraceBitmapProbe {
public:
    static const QMap<QString, double>& options(const OvTraceBitmap& tracer) {
        return tracer.options;
    }
    static const ovtrace::QuantizedImage* indexedImage(const OvTraceBitmap& tracer) {
        return tracer.indexedImage.get();
    }
};
