// How fast the window is: from a change of a setting to its result, how long the main thread is
// held meanwhile, and how many frames a second zooming and panning have.
//
//     QT_QPA_PLATFORM=offscreen viewer_bench IMAGE...

#include <viewer/canvas.h>
#include <viewer/mainwindow.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QImage>
#include <QTimer>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <ctime>
#include <random>
#include <vector>

namespace {

/// A method, and a setting of it to change.
struct Change {
    const char* method;
    const char* key;
};
constexpr Change OutlinesChange{"outlines", "pathomit"};
constexpr std::array<Change, 3> AllChanges{
    {OutlinesChange, {"regions", "speck"}, {"centerlines", "speckarea"}}};

constexpr int Changes = 7;
constexpr int Frames = 200;

double millisecondsSince(const QElapsedTimer& clock) {
    return static_cast<double>(clock.nsecsElapsed()) * 1e-6;
}

/// The processor time of the calling thread, where the system tells it: what other programs of a
/// busy machine take is not in it.
double ownMilliseconds() {
#ifdef CLOCK_THREAD_CPUTIME_ID
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) * 1e-6;
#else
    return 0.0;
#endif
}

/// Watches how late a timer of the main thread comes, and how much the thread worked meanwhile.
class Watch : public QObject {
public:
    Watch() {
        QObject::connect(&timer, &QTimer::timeout, this, [this] {
            longest = std::max(longest, millisecondsSince(clock) - 1.0);
            longestWork = std::max(longestWork, ownMilliseconds() - worked);
            clock.restart();
            worked = ownMilliseconds();
        });
        timer.setTimerType(Qt::PreciseTimer);
    }

    void start() {
        longest = 0.0;
        longestWork = 0.0;
        worked = ownMilliseconds();
        clock.start();
        timer.start(1);
    }
    double longestMilliseconds() const {
        return longest;
    }
    double longestWorkMilliseconds() const {
        return longestWork;
    }

private:
    QTimer timer;
    QElapsedTimer clock;
    double longest = 0.0;
    double longestWork = 0.0;
    double worked = 0.0;
};

void waitForResult(Document& document) {
    while (document.isTracing())
        QApplication::processEvents(QEventLoop::AllEvents, 1);
}

QImage noise(int width, int height) {
    QImage image(width, height, QImage::Format_RGB32);
    std::minstd_rand random(1);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x)
            image.setPixel(x, y, static_cast<QRgb>(random()) | 0xff000000U);
    }
    return image;
}

/// `count` small squares of two colours on a white ground.
QImage squares(int count) {
    constexpr int Side = 6;
    const int columns = static_cast<int>(std::ceil(std::sqrt(count)));
    QImage image(columns * Side, columns * Side, QImage::Format_RGB32);
    image.fill(Qt::white);
    for (int i = 0; i < count; ++i) {
        for (int y = 1; y < Side - 1; ++y) {
            for (int x = 1; x < Side - 1; ++x)
                image.setPixel(i % columns * Side + x, i / columns * Side + y,
                               i % 3 == 0 ? qRgb(200, 0, 0) : qRgb(0, 0, 160));
        }
    }
    return image;
}

void measureChanges(const QString& name, const Change& change, MainWindow& window) {
    Document& document = window.document();
    waitForResult(document);
    std::vector<double> times;
    Watch watch;
    watch.start();
    for (int i = 0; i < Changes; ++i) {
        JobSettings settings = document.settings();
        settings.set("method", change.method);
        settings.set(change.key, 8.0 + i % 2);
        QElapsedTimer clock;
        clock.start();
        document.change(settings, "bench");
        waitForResult(document);
        times.push_back(millisecondsSince(clock));
    }
    std::sort(times.begin(), times.end());
    std::printf(
        "%-28s %-11s change to result %8.1f ms (median of %d); main thread held at most %6.1f ms, "
        "of which it worked %6.1f ms\n",
        qPrintable(name), change.method, times[times.size() / 2], Changes,
        watch.longestMilliseconds(), watch.longestWorkMilliseconds());
}

void measureFrames(MainWindow& window) {
    auto* canvas = window.findChild<Canvas*>();
    std::printf("%-28s %zu outlines\n", "frames", canvas->scene()->outlines().size());
    QImage frame(canvas->size(), QImage::Format_RGB32);
    const auto measure = [&](const char* name, auto step) {
        QElapsedTimer clock;
        clock.start();
        double longest = 0.0;
        for (int i = 0; i < Frames; ++i) {
            QElapsedTimer one;
            one.start();
            step(i);
            canvas->render(&frame);
            QApplication::processEvents();
            longest = std::max(longest, millisecondsSince(one));
        }
        std::printf("%-28s %6.1f frames/s, longest frame %6.1f ms\n", name,
                    Frames / (millisecondsSince(clock) * 1e-3), longest);
    };
    measure("zoom", [&](int i) {
        canvas->setZoom(canvas->zoom() * (i % 40 < 20 ? 1.1 : 1.0 / 1.1), {300, 300});
    });
    canvas->setZoom(4.0, {300, 300});
    measure("pan", [&](int i) { canvas->panBy({i % 100 < 50 ? -12.0 : 12.0, 5.0}); });
}

} // namespace

int main(int argc, char* argv[]) {
    QApplication application(argc, argv);
    QApplication::setApplicationName("viewer_bench");
    MainWindow window;
    window.resize(1280, 800);
    window.show();
    for (int i = 1; i < argc; ++i) {
        const QString image = QString::fromLocal8Bit(argv[i]);
        window.open(image);
        for (const Change& change : AllChanges)
            measureChanges(QFileInfo(image).fileName(), change, window);
    }
    window.document().open(noise(1000, 1000));
    measureChanges("noise of 1 megapixel", OutlinesChange, window);
    window.document().open(squares(100000));
    measureChanges("100,000 squares", OutlinesChange, window);
    measureFrames(window);
    return 0;
}
