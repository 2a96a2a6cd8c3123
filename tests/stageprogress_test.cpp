#include "reference/compare.h"
#include "support/probe.h"
#include "support/randominput.h"

#include <stageprogress.h>
#include <tracebitmap.h>
#include <traceprogress.h>

#include <QImage>

#include <gtest/gtest.h>

#include <algorithm>
#include <ctime>
#include <functional>
#include <stdexcept>
#include <vector>

using namespace ovtrace;

namespace {

/// Notes what it is told; stops the trace at the report with that number.
class Recorder : public OvTraceProgress {
public:
    explicit Recorder(int stopAt = -1) : stopAt(stopAt) {
    }
    bool report(double fraction) override {
        fractions.push_back(fraction);
        return static_cast<int>(fractions.size()) != stopAt;
    }

    std::vector<double> fractions;

private:
    int stopAt;
};

/// Measures the processor time from one report to the next.
class Stopwatch : public OvTraceProgress {
public:
    bool report(double) override {
        const std::clock_t now = std::clock();
        longest = std::max(longest, now - last);
        last = now;
        return true;
    }
    double longestMilliseconds() const {
        return 1000.0 * static_cast<double>(longest) / CLOCKS_PER_SEC;
    }

private:
    std::clock_t last = std::clock();
    std::clock_t longest = 0;
};

void setColorOptions(OvTraceBitmap& tracer) {
    tracer.setOption("monochrome", 0.0);
}

QImage noise(int width, int height, int levels) {
    QImage image(width, height, QImage::Format_RGB32);
    std::uint32_t state = 1;
    for (int y = 0; y < height; ++y) {
        auto* row = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < width; ++x) {
            const auto channel = [&] {
                state = state * 1664525U + 1013904223U;
                const int step = 255 / (levels - 1);
                return static_cast<int>(state >> 24U) * levels / 256 * step;
            };
            const int red = channel();
            const int green = levels == 2 ? red : channel();
            row[x] = qRgb(red, green, levels == 2 ? red : channel());
        }
    }
    return image;
}

/// Teeth of one pixel: one outline along all of them.
[[maybe_unused]] QImage comb(int width, int height) {
    QImage image(width, height, QImage::Format_RGB32);
    for (int y = 0; y < height; ++y) {
        auto* row = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < width; ++x)
            row[x] = y == 0 || x % 2 == 0 ? qRgb(0, 0, 0) : qRgb(255, 255, 255);
    }
    return image;
}

} // namespace

TEST(StageProgress, AnyHostLeavesTheResultAsItIs) {
    RandomInput input(20262);
    for (int round = 0; round < 150; ++round) {
        const QImage image = input.image(40);
        OvTraceBitmap plain;
        for (const auto& [key, value] : input.options())
            plain.setOption(key, value);
        plain.setPalette(input.palette(6));
        OvTraceBitmap followed = plain;
        Recorder recorder;
        followed.setProgress(&recorder);
        OvTraceBitmap::seedRandom(5);
        const auto expected = plain.trace(image);
        OvTraceBitmap::seedRandom(5);
        EXPECT_EQ(difference(followed.trace(image), expected), QString());
        EXPECT_EQ(followed.getPalette(), plain.getPalette());
        EXPECT_EQ(followed.getPolylineLayers(), plain.getPolylineLayers());
        EXPECT_EQ(TraceBitmapProbe::options(followed).keys(),
                  TraceBitmapProbe::options(plain).keys());
    }
}

TEST(StageProgress, FractionsRiseFromNothingToAllAtMost) {
    OvTraceBitmap tracer;
    setColorOptions(tracer);
    Recorder recorder;
    tracer.setProgress(&recorder);
    tracer.trace(noise(1200, 1000, 200));
    ASSERT_GT(recorder.fractions.size(), 10U);
    EXPECT_EQ(recorder.fractions.front(), 0.0);
    EXPECT_TRUE(std::is_sorted(recorder.fractions.begin(), recorder.fractions.end()));
    EXPECT_GT(recorder.fractions.back(), 0.5);
    EXPECT_LE(recorder.fractions.back(), 1.0);
}

TEST(StageProgress, ACancelledTraceReturnsNothingAndLeavesTheTracerAsItWas) {
    const QImage image = noise(300, 300, 5);
    OvTraceBitmap fresh;
    fresh.setOption("usebrightness", 1.0);
    fresh.setOption("monochrome", -0.0);
    Recorder all;
    OvTraceBitmap whole = fresh;
    whole.setProgress(&all);
    OvTraceBitmap::seedRandom(1);
    const auto expected = whole.trace(image);
    ASSERT_FALSE(expected.isEmpty());
    ASSERT_GE(all.fractions.size(), 5U) << "one a stage";
    for (int stopAt = 1; stopAt <= 5; ++stopAt) {
        OvTraceBitmap tracer = fresh;
        tracer.setOption("unknown", 3.0);
        const auto options = TraceBitmapProbe::options(tracer);
        Recorder stopper(stopAt);
        tracer.setProgress(&stopper);
        EXPECT_TRUE(tracer.trace(image).isEmpty());
        EXPECT_EQ(static_cast<int>(stopper.fractions.size()), stopAt) << "not asked again";
        EXPECT_TRUE(tracer.getPalette().isEmpty());
        EXPECT_TRUE(tracer.getPolylineLayers().isEmpty());
        EXPECT_EQ(TraceBitmapProbe::options(tracer), options);
        tracer.setProgress(nullptr);
        OvTraceBitmap::seedRandom(1);
        EXPECT_EQ(difference(tracer.trace(image), expected), QString())
            << "as if for the first time";
    }
}

TEST(StageProgress, AnExceptionOfTheHostComesThroughAndLeavesTheTracerAsItWas) {
    class Thrower : public OvTraceProgress {
    public:
        bool report(double fraction) override {
            if (fraction > 0.2)
                throw std::runtime_error("enough");
            return true;
        }
    };
    Thrower thrower;
    OvTraceBitmap tracer;
    tracer.setProgress(&thrower);
    const auto options = TraceBitmapProbe::options(tracer);
    EXPECT_THROW(tracer.trace(noise(50, 50, 9)), std::runtime_error);
    EXPECT_TRUE(tracer.getPalette().isEmpty());
    EXPECT_EQ(TraceBitmapProbe::options(tracer), options);
}

TEST(StageProgress, NullAndEmptyImagesAskNobody) {
    OvTraceBitmap tracer;
    Recorder recorder;
    tracer.setProgress(&recorder);
    EXPECT_TRUE(tracer.trace(QImage()).isEmpty());
    EXPECT_TRUE(recorder.fractions.empty());
}

TEST(StageProgress, AsksOftenEnough) {
#if defined(NDEBUG) && !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__) &&          \
    !defined(Q_OS_WIN)
    // Processor time: other programs do not count. Twice what is promised, for slow machines.
    constexpr double Most = 40.0;
    const std::vector<std::function<void(OvTraceBitmap&)>> settings{
        setColorOptions,
        [](OvTraceBitmap& t) {
            setColorOptions(t);
            t.setOption("pathomit", 0.0);
        },
        [](OvTraceBitmap& t) {
            setColorOptions(t);
            t.setOption("pathomit", 1e9);
            t.setOption("blurradius", 5.0);
        },
        [](OvTraceBitmap& t) { t.setOption("usebrightness", 1.0); },
    };
    const std::vector<QImage> images{noise(1500, 1500, 200), noise(1500, 1500, 2), comb(2000, 700),
                                     noise(500, 500, 9).convertToFormat(QImage::Format_RGBA32FPx4)};
    for (const QImage& image : images) {
        for (const auto& set : settings) {
            OvTraceBitmap tracer;
            set(tracer);
            Stopwatch stopwatch;
            tracer.setProgress(&stopwatch);
            tracer.trace(image);
            EXPECT_LT(stopwatch.longestMilliseconds(), Most)
                << "image " << &image - images.data() << ", setting " << &set - settings.data();
        }
    }
#else
    GTEST_SKIP() << "times mean something in optimised programs alone";
#endif
}
