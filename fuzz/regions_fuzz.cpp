// Maps an image that the fuzzer makes, under options that it makes, and demands what holds for any
// map: areas that sum to the image's, rings that close to the last digit, the same map twice.

#include "fuzzinput.h"

#include <traceregions.h>

#include <QImage>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <iterator>

namespace {

using namespace ovtrace;

QImage takeImage(FuzzInput& input) {
    const int width = input.take<std::uint8_t>() % 24 + 1;
    const int height = input.take<std::uint8_t>() % 24 + 1;
    const bool mixed = input.take<std::uint8_t>() % 2 == 1;
    QImage image(width, height, QImage::Format_ARGB32);
    const QRgb colors[] = {input.take<QRgb>() | 0xff000000U, input.take<QRgb>() | 0xff000000U,
                           input.take<QRgb>(), input.take<QRgb>() & 0x00ffffffU};
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const auto byte = input.take<std::uint8_t>();
            const QRgb a = colors[byte & 3];
            const QRgb b = colors[byte >> 2 & 3];
            const int share = mixed ? byte >> 4 : 0;
            const auto mix = [share](int p, int q) { return (p * (15 - share) + q * share) / 15; };
            image.setPixel(x, y,
                           qRgba(mix(qRed(a), qRed(b)), mix(qGreen(a), qGreen(b)),
                                 mix(qBlue(a), qBlue(b)), mix(qAlpha(a), qAlpha(b))));
        }
    }
    return image;
}

void demand(bool holds, const char* what) {
    if (holds)
        return;
    std::fprintf(stderr, "does not hold: %s\n", what);
    std::abort();
}

Point startOf(const RegionMap& map, RingStep step) {
    const auto pieces = map.piecesOf(map.boundary(step.boundary));
    return step.reversed ? pieces.back().to : pieces.front().from;
}

/// `opaque` is the area of an image without transparent pixels, -1 for others.
void check(const RegionMap& map, double opaque) {
    double area = 0.0;
    for (std::size_t i = 0; i < map.regions.size(); ++i) {
        area += map.regions[i].area;
        for (const MapRing& ring : map.ringsOf(map.regions[i])) {
            const auto steps = map.stepsOf(ring);
            demand(!steps.empty(), "rings have steps");
            for (std::size_t k = 0; k < steps.size(); ++k) {
                const RingStep next = steps[(k + 1) % steps.size()];
                const RingStep back{steps[k].boundary, !steps[k].reversed};
                demand(startOf(map, back) == startOf(map, next), "rings close");
            }
        }
    }
    for (const Piece& piece : map.pieces)
        demand(isFinite(piece.from) && isFinite(piece.to) && std::isfinite(piece.bulge) &&
                   isFinite(piece.control1) && isFinite(piece.control2),
               "places are numbers");
    if (opaque >= 0.0)
        demand(std::fabs(area - opaque) < 1e-6 * (1.0 + opaque), "areas sum to the image's");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    FuzzInput input(bytes, size);
    constexpr const char* Keys[] = {"colors", "tolerance", "speck", "fit", "cubics", "light"};
    OvTraceRegions tracer;
    for (int count = input.take<std::uint8_t>() % 6; count > 0; --count) {
        const QString key = Keys[input.take<std::uint8_t>() % std::size(Keys)];
        tracer.setOption(key, input.take<std::int8_t>() / 4.0);
    }
    const QImage image = takeImage(input);
    bool transparent = false;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            transparent = transparent || qAlpha(image.pixel(x, y)) < 255;
    }
    const RegionMap map = tracer.trace(image);
    check(map, transparent ? -1.0 : double(image.width()) * image.height());
    const RegionMap again = tracer.trace(image);
    demand(map.pieces == again.pieces && map.palette == again.palette, "the same twice");
    return 0;
}
