// Traces an image that the fuzzer makes, under options that it makes, twice on one object, and
// compares every result with the reference.

#include "fuzzinput.h"
#include "reference/compare.h"
#include "reference/tracetwin.h"

#include <tracebitmap.h>

#include <QImage>

#include <cstdio>
#include <cstdlib>

namespace {

constexpr const char* Keys[] = {
    "monochrome",    "numberofcolors", "mincolorratio",  "colorquantcycles",
    "colorsampling", "blurradius",     "blurdelta",      "pathomit",
    "ltres",         "qtres",          "alphathreshold", "brightnessthreshold",
    "usealpha",      "usebrightness"};

/// A small value, or any double at all where it cannot cost hours.
double takeValue(FuzzInput& input, const QString& key) {
    const auto small = input.take<std::int8_t>();
    if (small != -128)
        return small / 4.0;
    const auto value = input.take<double>();
    const bool counts = key == "numberofcolors" || key == "colorquantcycles";
    return counts && value > 64.0 && value < 2147483648.0 ? 64.0 : value;
}

QImage takeImage(FuzzInput& input) {
    const int width = input.take<std::uint8_t>() % 32 + 1;
    const int height = input.take<std::uint8_t>() % 32 + 1;
    const auto kind = input.take<std::uint8_t>();
    QImage image(width, height, kind % 2 == 0 ? QImage::Format_ARGB32 : QImage::Format_RGB32);
    const QRgb colors[] = {input.take<QRgb>(), input.take<QRgb>(), input.take<QRgb>(),
                           input.take<QRgb>()};
    std::uint8_t bits = 0;
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const int place = (y * width + x) % 4;
            if (place == 0)
                bits = input.take<std::uint8_t>();
            const QRgb color = colors[bits >> (2 * place) & 3];
            image.setPixel(x, y, kind % 4 < 2 ? color : color + static_cast<QRgb>(bits));
        }
    }
    return image;
}

void demand(bool holds, const QString& what) {
    if (holds)
        return;
    std::fprintf(stderr, "difference: %s\n", qPrintable(what));
    std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    FuzzInput input(bytes, size);
    OvTraceBitmap engine;
    TraceTwin twin;
    for (int count = input.take<std::uint8_t>() % 12; count > 0; --count) {
        const QString key = Keys[input.take<std::uint8_t>() % std::size(Keys)];
        const double value = takeValue(input, key);
        engine.setOption(key, value);
        twin.setOption(key, value);
    }
    for (int round = 0; round < 2 && !input.isEmpty(); ++round) {
        const QImage image = takeImage(input);
        OvTraceBitmap::seedRandom(1);
        const auto traced = engine.trace(image);
        TraceTwin::seedRandom(1);
        const auto expected = twin.trace(image);
        const QString where = difference(traced, expected);
        demand(where.isEmpty(), where);
        demand(engine.getPalette() == twin.palette, "palettes");
        demand(engine.getPolylineLayers() == twin.polylineLayers, "layers");
    }
    return 0;
}
