#include "jobrequests.h"

#include "choices.h"
#include "errors.h"
#include "settinguse.h"
#include "settingvalue.h"

namespace {

QList<QColor> colorsOf(const JobSettings& job, const QString& key) {
    QList<QColor> colors;
    for (const QString& word : job.value(key).toStringList())
        colors.append(parseColor(word));
    return colors;
}

} // namespace

TraceSettings traceSettings(const JobSettings& job) {
    TraceSettings trace;
    trace.method = job.method();
    trace.mode = job.mode();
    trace.palette = colorsOf(job, "palette");
    for (const Setting& setting : settingTable()) {
        if (!setting.isTracerOption || !setting.methods.contains(trace.method))
            continue;
        // In raw mode the tracer's own defaults stand, some of which are no values at all.
        if (trace.mode != Mode::Raw || job.isFixed(setting.key))
            trace.values[setting.key] = job.number(setting.key);
    }
    return trace;
}

SizeRequest sizeRequest(const JobSettings& job) {
    SizeRequest size;
    size.dotsFromFile = job.value("dpi") == "auto";
    if (job.isGiven("dpi") && !size.dotsFromFile)
        size.dotsPerInch = job.number("dpi");
    if (job.isGiven("width"))
        size.widthMillimetres = parseLength(job.text("width"));
    if (job.isGiven("height"))
        size.heightMillimetres = parseLength(job.text("height"));
    const bool hasLength = size.widthMillimetres || size.heightMillimetres;
    if (job.isGiven("dpi") && hasLength)
        throw UsageError(QString("give one of %1, %2 and %3; the others follow from it")
                             .arg(settingName("dpi"), settingName("width"), settingName("height")));
    if (job.isGiven("units"))
        size.unit = choiceOf(unitChoices(), job.text("units"));
    if (job.isGiven("drawing-scale"))
        size.modelScale = parseRatio(job.text("drawing-scale")).value_or(1.0);
    const bool isSized = job.isGiven("dpi") || hasLength;
    if (isSized && parseWorld(job.text("world")))
        throw UsageError(QString("give %1 or the size: %2, %3 or %4")
                             .arg(settingName("world"), settingName("dpi"), settingName("width"),
                                  settingName("height")));
    if (job.isGiven("crs"))
        size.crs = job.text("crs");
    const bool isInPixels = size.unit.value_or(Unit::Pixel) == Unit::Pixel;
    if (!isSized && (!isInPixels || job.isGiven("drawing-scale")))
        throw UsageError(QString("%1 needs to know the size: give %2, %3 or %4")
                             .arg(settingName(isInPixels ? "drawing-scale" : "units"),
                                  settingName("dpi"), settingName("width"), settingName("height")));
    if (job.isGiven("drawing-scale") && size.unit == Unit::Pixel)
        throw UsageError(
            QString("%1 has no effect on coordinates in pixels").arg(settingName("drawing-scale")));
    return size;
}

namespace {

EngineValues preparationValues(const JobSettings& job) {
    constexpr double AutoThreshold = -2.0;
    constexpr double LocalThreshold = -3.0;
    EngineValues values;
    for (const char* key : {"whiten", "deskew"}) {
        if (job.isOn(key))
            values[key] = 1.0;
    }
    const QVariant threshold = job.value("threshold");
    if (threshold == "auto")
        values["threshold"] = AutoThreshold;
    else if (threshold == "local")
        values["threshold"] = LocalThreshold;
    else if (threshold != "none")
        values["threshold"] = threshold.toDouble();
    return values;
}

} // namespace

InputRequest inputRequest(const JobSettings& job) {
    InputRequest input;
    input.page = static_cast<int>(job.number("page"));
    if (job.isGiven("crop"))
        input.crop = parseRectangle(job.text("crop")).value_or(QRect());
    if (job.isGiven("background"))
        input.background = parseColor(job.text("background"));
    input.preparation = preparationValues(job);
    input.isStrict = job.isOn("strict");
    input.largestPixels = static_cast<qint64>(job.number("max-pixels"));
    const bool usesWorld = !whyUnused(*findSetting("world"), job);
    input.world = usesWorld ? parseWorld(job.text("world")) : std::nullopt;
    input.usesWorldFile = usesWorld && job.text("world") == "auto";
    return input;
}

WriterOptions writerOptions(const JobSettings& job) {
    WriterOptions writer;
    writer.outlinesOnly = job.isOn("outline");
    writer.closeSeams = job.isOn("close-seams");
    if (job.isGiven("precision"))
        writer.precision = static_cast<int>(job.number("precision"));
    writer.dxfVersion = choiceOf(dxfVersionChoices(), job.text("dxf-version"));
    writer.dxfCurves = choiceOf(dxfCurvesChoices(), job.text("dxf-curves"));
    if (writer.dxfVersion == DxfVersion::R12 && !asPolylines(writer.dxfCurves))
        throw UsageError(QString("DXF R12 has no splines: choose arcs or lines for %1")
                             .arg(settingName("dxf-curves")));
    writer.cutOut = job.isOn("cut-out");
    writer.dropBackground = job.isOn("drop-background");
    writer.hiddenColors = colorsOf(job, "hide-colors");
    writer.dxfEdges = choiceOf(dxfEdgesChoices(), job.text("dxf-edges"));
    writer.dxfHatch = job.isOn("dxf-hatch");
    writer.deviation = job.number("deviation");
    writer.scale = job.number("scale");
    writer.overlay = job.isOn("overlay");
    if (job.isGiven("paper"))
        writer.paper = parsePaper(job.text("paper"));
    writer.marginMillimetres = parseLength(job.text("margin")).value_or(0.0);
    return writer;
}
