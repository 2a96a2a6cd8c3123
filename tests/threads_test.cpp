#include "reference/compare.h"

#include <tracebitmap.h>
#include <tracecenterlines.h>
#include <traceprogress.h>
#include <traceregions.h>

#include <QImage>

#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <thread>
#include <vector>

// Tracers in several threads of a host. These tests run under ThreadSanitizer, too.

namespace {

QImage rings(int side) {
    QImage image(side, side, QImage::Format_RGB32);
    for (int y = 0; y < side; ++y) {
        for (int x = 0; x < side; ++x) {
            const int dx = x - side / 2;
            const int dy = y - side / 2;
            image.setPixel(x, y, qRgb((dx * dx + dy * dy) / 300 % 2 * 255, 40, 90));
        }
    }
    return image;
}

QImage noise(int side) {
    QImage image(side, side, QImage::Format_RGB32);
    std::uint32_t state = 1;
    for (int y = 0; y < side; ++y) {
        auto* row = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < side; ++x) {
            state = state * 1664525U + 1013904223U;
            row[x] = state >> 8U | 0xff000000U;
        }
    }
    return image;
}

/// Runs the same work in some threads at once.
void inThreads(int threads, const std::function<void(int)>& work) {
    std::vector<std::thread> running;
    for (int i = 0; i < threads; ++i)
        running.emplace_back([&work, i] { work(i); });
    for (std::thread& thread : running)
        thread.join();
}

constexpr int Threads = 4;

struct Traced {
    QList<OvPolyline> outlines;
    QList<QList<char>> palette;
};

Traced traceInColor(const QImage& image, double minColorRatio) {
    OvTraceBitmap tracer;
    tracer.setOption(QStringLiteral("monochrome"), 0.0);
    tracer.setOption(QStringLiteral("mincolorratio"), minColorRatio);
    Traced traced;
    traced.outlines = tracer.trace(image);
    traced.palette = tracer.getPalette();
    return traced;
}

/// What a window does: it reads how far the worker is, and says when it shall stop.
class Link : public OvTraceProgress {
public:
    bool report(double fraction) override {
        reached = fraction;
        ++reports;
        return !cancelled;
    }
    std::atomic<double> reached{-1.0};
    std::atomic<int> reports{0};
    std::atomic<bool> cancelled{false};
};

} // namespace

TEST(Threads, TracesThatDrawNothingRepeatInAnyNumberOfThem) {
    const QImage image = rings(90);
    OvTraceBitmap::seedRandom(77);
    const Traced alone = traceInColor(image, 0.0);
    ASSERT_GT(alone.outlines.size(), 2);
    std::vector<Traced> found(Threads);
    inThreads(Threads,
              [&](int i) { found[static_cast<std::size_t>(i)] = traceInColor(image, 0.0); });
    for (const Traced& traced : found) {
        EXPECT_EQ(difference(traced.outlines, alone.outlines), QString());
        EXPECT_EQ(traced.palette, alone.palette);
    }
}

TEST(Threads, RandomColorsAreDrawnFromOneSequence) {
    const QImage image = rings(60);
    inThreads(Threads, [&](int i) {
        OvTraceBitmap::seedRandom(static_cast<unsigned>(i));
        for (int round = 0; round < 5; ++round)
            EXPECT_EQ(traceInColor(image, 0.3).palette.size(), 16);
    });
}

TEST(Threads, RegionsAndCenterLinesAreTheSameInAnyNumberOfThem) {
    const QImage image = rings(90);
    OvTraceRegions regions;
    OvTraceCenterlines lines;
    const auto map = regions.trace(image);
    const OvCenterlines strokes = lines.trace(image);
    ASSERT_FALSE(map.regions.empty());
    inThreads(Threads, [&](int i) {
        if (i % 2 == 0) {
            OvTraceRegions own;
            EXPECT_EQ(own.trace(image).regions.size(), map.regions.size());
        } else {
            OvTraceCenterlines own;
            const OvCenterlines traced = own.trace(image);
            EXPECT_EQ(traced.nodes, strokes.nodes);
            EXPECT_EQ(traced.strokes.size(), strokes.strokes.size());
        }
    });
}

TEST(Threads, AWindowCancelsTheTraceOfAWorker) {
    const QImage image = noise(1500);
    for (const int patience : {0, 1, 4, 9}) {
        Link link;
        OvTraceBitmap tracer;
        tracer.setOption(QStringLiteral("monochrome"), 0.0);
        tracer.setProgress(&link);
        QList<OvPolyline> polylines;
        std::thread worker([&] { polylines = tracer.trace(image); });
        while (link.reports < patience)
            std::this_thread::yield();
        link.cancelled = true;
        worker.join();
        EXPECT_TRUE(polylines.isEmpty());
        EXPECT_TRUE(tracer.getPalette().isEmpty());
        EXPECT_LT(link.reached, 1.0);
    }
}
