#include "tracing.h"

#include "centerlinesdrawing.h"
#include "regionsdrawing.h"
#include "settingtable.h"

#include <tracebitmap.h>
#include <tracecenterlines.h>
#include <traceregions.h>

namespace {

/// Black and white by lightness. The tracer leaves an image with a colour table as it is: its
/// table is put through the tracer's threshold instead of its pixels.
void thresholdColorTable(QImage& image, OvTraceBitmap& tracer) {
    const QList<QRgb> table = image.colorTable();
    QImage colors(static_cast<int>(table.size()), 1, QImage::Format_ARGB32);
    for (int i = 0; i < colors.width(); ++i)
        colors.setPixel(i, 0, table[i]);
    tracer.preprocess(colors);
    for (int i = 0; i < colors.width(); ++i)
        image.setColor(i, colors.pixel(i, 0));
}

/// Tracer colours are four bytes red, green, blue, alpha, each the channel value minus 128.
QList<char> toStored(const QColor& color) {
    return {static_cast<char>(color.red() - 128), static_cast<char>(color.green() - 128),
            static_cast<char>(color.blue() - 128), static_cast<char>(color.alpha() - 128)};
}

QColor fromStored(const QList<char>& color) {
    const auto channel = [&](qsizetype i) { return static_cast<signed char>(color[i]) + 128; };
    return {channel(0), channel(1), channel(2), channel(3)};
}

void setOptions(OvTraceBitmap& tracer, const TraceSettings& settings) {
    for (auto value = settings.values.begin(); value != settings.values.end(); ++value)
        tracer.setOption(value.key(), value.value());
    QList<QList<char>> palette;
    for (const QColor& color : settings.palette)
        palette.append(toStored(color));
    tracer.setPalette(palette);
}

QPointF toPoint(const OvVector& vector) {
    return {vector.x, vector.y};
}

/// The outline as a path; `polyline` is left empty, so that the drawing is held once.
void appendOutline(OvPolyline& polyline, PathList& paths) {
    paths.begin(toPoint(polyline.getStartPoint()));
    for (qsizetype i = 1; i < polyline.countPieces(); ++i) {
        if (polyline.isVertexAt(i)) {
            paths.lineTo(toPoint(polyline.getVertexAt(i)));
            continue;
        }
        const OvSpline curve = polyline.getSplineAt(i);
        paths.quadraticTo(toPoint(curve.getControlPointAt(1)), toPoint(curve.getControlPointAt(2)));
    }
    polyline = OvPolyline();
}

void traceOutlines(const TraceSettings& settings, OvTraceProgress* progress, Drawing& drawing) {
    OvTraceBitmap tracer;
    setOptions(tracer, settings);
    if (settings.mode == Mode::Bw &&
        drawing.image.pixelFormat().colorModel() == QPixelFormat::Indexed)
        thresholdColorTable(drawing.image, tracer);
    OvTraceBitmap::seedRandom(1);
    tracer.setProgress(progress);
    QList<OvPolyline> polylines = tracer.trace(drawing.image);
    const QList<int> layers = tracer.getPolylineLayers();
    for (qsizetype i = 0; i < polylines.size(); ++i) {
        appendOutline(polylines[i], drawing.paths);
        drawing.appendShapeOfLastPath(ShapeKind::Outline, layers[i]);
    }
    for (const QList<char>& color : tracer.getPalette())
        drawing.palette.append(fromStored(color));
}

void traceRegions(const TraceSettings& settings, OvTraceProgress* progress, Drawing& drawing) {
    OvTraceRegions tracer;
    for (auto value = settings.values.begin(); value != settings.values.end(); ++value)
        tracer.setOption(value.key(), value.value());
    QList<QRgb> palette;
    for (const QColor& color : settings.palette)
        palette.append(color.rgba());
    tracer.setPalette(palette);
    tracer.setProgress(progress);
    appendRegions(tracer.trace(drawing.image), drawing);
}

void traceCenterlines(const TraceSettings& settings, OvTraceProgress* progress, Drawing& drawing) {
    OvTraceCenterlines tracer;
    for (auto value = settings.values.begin(); value != settings.values.end(); ++value)
        tracer.setOption(value.key(), value.value());
    tracer.setProgress(progress);
    appendCenterlines(tracer.trace(drawing.image), drawing);
}

} // namespace

Drawing traceImage(InputImage&& input, const TraceSettings& settings, OvTraceProgress* progress) {
    Drawing drawing;
    drawing.title = std::move(input.title);
    drawing.image = std::move(input.image);
    drawing.size = drawing.image.size();
    drawing.method = settings.method;
    if (settings.method == Method::Regions)
        traceRegions(settings, progress, drawing);
    else if (settings.method == Method::Centerlines)
        traceCenterlines(settings, progress, drawing);
    else
        traceOutlines(settings, progress, drawing);
    return drawing;
}

QString likelyCause(const Drawing& drawing, const TraceSettings& settings) {
    if (!drawing.message.isEmpty())
        return drawing.message;
    if (drawing.method == Method::Regions)
        return "the image is transparent all over";
    if (drawing.method == Method::Centerlines)
        return "there is no ink on the paper";
    const double shortest = settings.values.value("pathomit", 8);
    if (2.0 * (drawing.size.width() + drawing.size.height()) < shortest)
        return QString("every outline has fewer than %1 corners; lower %2")
            .arg(shortest)
            .arg(settingName("pathomit"));
    if (settings.values.value("numberofcolors", 16) < 1 && settings.palette.isEmpty())
        return "there are no colours; raise " + settingName("numberofcolors");
    return QString("no region has an outline long enough; lower %1, or raise %2")
        .arg(settingName("pathomit"), settingName("numberofcolors"));
}
