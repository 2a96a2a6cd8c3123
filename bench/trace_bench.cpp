// What each stage costs, and a whole trace, by class of picture. Before anything is timed, the
// engine's answer on a part of the picture is compared with the reference's.

#include "pictures.h"
#include "reference/compare.h"
#include "reference/tracetwin.h"

#include <blur.h>
#include <color.h>
#include <fitting.h>
#include <imageload.h>
#include <internodes.h>
#include <layering.h>
#include <palette.h>
#include <pathscan.h>
#include <polylines.h>
#include <preprocess.h>
#include <quantization.h>
#include <random.h>
#include <tracebitmap.h>

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstring>
#include <functional>

using namespace ovtrace;

namespace {

constexpr int CheckedSide = 400;

OvTraceBitmap makeTracer(const Picture& picture) {
    OvTraceBitmap tracer;
    for (const auto& [key, value] : picture.options)
        tracer.setOption(key, value);
    return tracer;
}

QList<OvPolyline> traceWithTwin(const Picture& picture, const QImage& image) {
    TraceTwin twin;
    for (const auto& [key, value] : picture.options)
        twin.setOption(key, value);
    TraceTwin::seedRandom(1);
    return twin.trace(image);
}

bool answersRight(const Picture& picture) {
    const QImage part = picture.image.copy(0, 0, CheckedSide, CheckedSide);
    OvTraceBitmap tracer = makeTracer(picture);
    OvTraceBitmap::seedRandom(1);
    const QString where = difference(tracer.trace(part), traceWithTwin(picture, part));
    if (!where.isEmpty())
        std::fprintf(stderr, "%s: %s\n", picture.name.c_str(), qPrintable(where));
    return where.isEmpty();
}

OptionMap optionsOf(const Picture& picture) {
    OptionMap options = defaultOptions();
    for (const auto& [key, value] : picture.options)
        options[key] = value;
    return options;
}

PixelImage load(const QImage& image, OptionMap& options) {
    return loadPixels(image, thresholdFor(image, options));
}

PixelImage copyOf(const PixelImage& image) {
    PixelImage copy(image.width, image.height, image.channels);
    for (int y = 0; y < image.height; ++y)
        std::memcpy(copy.row(y), image.row(y), static_cast<std::size_t>(image.rowBytes()));
    return copy;
}

/// What the stages hand on for one picture, made once.
struct Stages {
    explicit Stages(const Picture& source)
        : picture(source), options(optionsOf(source)), loaded(load(source.image, options)),
          blurred(load(source.image, options)) {
        start = samplepalette(loaded, 16);
        blur(blurred, 1, 2000);
        Palette palette = start;
        quantized = std::make_unique<QuantizedImage>(
            colorquantization(copyOf(blurred), palette, {3, 0.02}));
        Path path;
        PathScan scan(LayerSet(*quantized), 8);
        while (scan.next(path) >= 0) {
            paths.push_back(path);
            nodes.emplace_back();
            internodes(path, nodes.back());
            traced.emplace_back();
            tracepath(nodes.back(), 1, 1, traced.back());
        }
    }

    const Picture& picture;
    OptionMap options;
    PixelImage loaded;
    Palette start;
    PixelImage blurred;
    std::unique_ptr<QuantizedImage> quantized;
    std::vector<Path> paths;
    std::vector<InternodePath> nodes;
    std::vector<TracedPath> traced;
};

void report(benchmark::State& state, const QImage& image) {
    const double pixels = static_cast<double>(image.width()) * image.height();
    state.counters["Mpx/s"] =
        benchmark::Counter(pixels / 1e6, benchmark::Counter::kIsIterationInvariantRate);
}

using Work = std::function<void(benchmark::State&)>;

/// Registers the benchmark `name`/<picture>; `once` does what is timed once.
void addBenchmark(const std::string& name, const Picture& picture, const Work& once) {
    benchmark::RegisterBenchmark((name + '/' + picture.name).c_str(), [&picture, once](
                                                                          benchmark::State& state) {
        for (auto iteration : state)
            once(state);
        report(state, picture.image);
    })->Unit(benchmark::kMillisecond);
}
void addBenchmark(const std::string& name, const Picture& picture,
                  const std::function<void()>& work) {
    addBenchmark(name, picture, [work](benchmark::State&) { work(); });
}

/// The same for work that uses up a copy of an image, whose making is not timed.
void addBenchmarkOnCopy(const std::string& name, const Picture& picture, const PixelImage& image,
                        const std::function<void(PixelImage&)>& work) {
    addBenchmark(name, picture, [&image, work](benchmark::State& state) {
        state.PauseTiming();
        PixelImage copy = copyOf(image);
        state.ResumeTiming();
        work(copy);
    });
}

void addStages(const std::shared_ptr<Stages>& s) {
    const Picture& picture = s->picture;
    const auto copy = std::make_shared<QImage>(picture.image.copy());
    addBenchmark("memcpy", picture, [&picture, copy] {
        std::memcpy(copy->bits(), picture.image.constBits(),
                    static_cast<std::size_t>(copy->sizeInBytes()));
        benchmark::DoNotOptimize(copy->constBits());
    });
    addBenchmark("1-load", picture,
                 [s] { benchmark::DoNotOptimize(load(s->picture.image, s->options).row(0)); });
    addBenchmark("2-samplepalette", picture,
                 [s] { benchmark::DoNotOptimize(samplepalette(s->loaded, 16).data()); });
    addBenchmarkOnCopy("3-blur", picture, s->loaded, [](PixelImage& image) {
        blur(image, 1, 2000);
        benchmark::DoNotOptimize(image.row(0));
    });
    addBenchmarkOnCopy("4-quantize", picture, s->blurred, [s](PixelImage& image) {
        Palette palette = s->start;
        benchmark::DoNotOptimize(colorquantization(std::move(image), palette, {3, 0.02}).colors);
    });
    addBenchmark("5-pathscan", picture, [s] {
        Path path;
        PathScan scan(LayerSet(*s->quantized), 8);
        while (scan.next(path) >= 0)
            benchmark::DoNotOptimize(path.data());
    });
    addBenchmark("6-internodes", picture, [s] {
        InternodePath nodes;
        for (const Path& path : s->paths) {
            internodes(path, nodes);
            benchmark::DoNotOptimize(nodes.data());
        }
    });
    addBenchmark("7-tracepath", picture, [s] {
        TracedPath traced;
        for (const InternodePath& nodes : s->nodes) {
            tracepath(nodes, 1, 1, traced);
            benchmark::DoNotOptimize(traced.data());
        }
    });
    addBenchmark("8-polylines", picture, [s] {
        PolylineOutput output(s->loaded.width, s->loaded.height);
        for (const TracedPath& traced : s->traced)
            output.add(0, traced);
        output.finish();
        benchmark::DoNotOptimize(output.takePolylines().size());
    });
}

void trace(const Picture& picture, const QImage& image, double colors = 16) {
    OvTraceBitmap tracer = makeTracer(picture);
    tracer.setOption("numberofcolors", colors);
    OvTraceBitmap::seedRandom(1);
    benchmark::DoNotOptimize(tracer.trace(image).size());
}

void addTraces(const Picture& picture) {
    addBenchmark("trace", picture, [&picture] { trace(picture, picture.image); });
    addBenchmark("trace-256-colors", picture, [&picture] { trace(picture, picture.image, 256); });
    addBenchmark("twin", picture,
                 [&picture] { benchmark::DoNotOptimize(traceWithTwin(picture, picture.image)); });
}

/// The middle megapixel of a picture once, and side by side to 4, 16 and 64 megapixels; 64
/// megapixels of each.
void addSizes(const Picture& picture) {
    constexpr int Side = 1000;
    constexpr int Sum = 64;
    const QImage& image = picture.image;
    const QImage tile =
        image.copy((image.width() - Side) / 2, (image.height() - Side) / 2, Side, Side);
    for (const int megapixels : {1, 4, 16, Sum}) {
        const std::string name = std::to_string(megapixels) + "-Mpx/" + picture.name;
        const QImage sized = tiled(tile, megapixels * 1000000LL);
        benchmark::RegisterBenchmark(name.c_str(),
                                     [&picture, sized](benchmark::State& state) {
                                         for (auto iteration : state)
                                             trace(picture, sized);
                                     })
            ->Unit(benchmark::kMillisecond)
            ->Iterations(Sum / megapixels);
    }
}

} // namespace

int main(int argc, char* argv[]) {
    benchmark::Initialize(&argc, argv);
    const QList<Picture> all = pictures();
    for (const Picture& picture : all) {
        if (!answersRight(picture))
            return 1;
        addStages(std::make_shared<Stages>(picture));
        addTraces(picture);
    }
    addSizes(all[0]);
    addSizes(all[1]);
    benchmark::RunSpecifiedBenchmarks();
}
