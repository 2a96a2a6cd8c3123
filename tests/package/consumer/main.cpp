#include <QImage>

#include <cstdio>

#include <tracebitmap.h>
#include <traceversion.h>

// Traces a black square on white and prints how many outlines there are, and which module made
// them.
int main() {
    QImage image(32, 32, QImage::Format_RGB32);
    image.fill(Qt::white);
    for (int y = 8; y < 24; ++y) {
        for (int x = 8; x < 24; ++x)
            image.setPixel(x, y, qRgb(0, 0, 0));
    }
    OvTraceBitmap tracer;
    tracer.setOption("monochrome", 0.0);
    tracer.setOption("blurradius", 0.0);
    tracer.setPalette({{-128, -128, -128, 127}, {127, 127, 127, 127}});
    const QList<OvPolyline> outlines = tracer.trace(image);
    const QByteArray version = QByteArray::number(OVTRACE_VERSION_MAJOR) + '.' +
                               QByteArray::number(OVTRACE_VERSION_MINOR) + '.' +
                               QByteArray::number(OVTRACE_VERSION_PATCH);
    std::printf("%s: %d outlines, end %g\n",
                version == ovTraceVersion() ? version.constData() : "another version",
                static_cast<int>(outlines.size()),
                outlines.isEmpty() ? -1.0 : outlines.last().getEndPoint().x);
}
