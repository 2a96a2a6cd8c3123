#include <options.h>
#include <tracebitmap.h>

#include <QImage>

#include <gtest/gtest.h>

#include <limits>
#include <new>

#ifdef __linux__
#include <cstdio>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#endif

// Whatever an option asks for, a tracer that finds no memory says so by std::bad_alloc alone.

using namespace ovtrace;

#if defined(__linux__) && !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)

namespace {

enum Outcome { Traced = 0, NoMemory = 3, OtherException = 4 };

/// What the process takes, in bytes.
rlim_t addressSpace() {
    long pages = 0;
    if (std::FILE* file = std::fopen("/proc/self/statm", "r")) {
        if (std::fscanf(file, "%ld", &pages) != 1)
            pages = 0;
        std::fclose(file);
    }
    return static_cast<rlim_t>(pages) * static_cast<rlim_t>(sysconf(_SC_PAGESIZE));
}

QImage gradients() {
    QImage image(200, 150, QImage::Format_ARGB32);
    for (int y = 0; y < 150; ++y) {
        for (int x = 0; x < 200; ++x)
            image.setPixel(x, y, qRgb(x, y, (x * y) & 255));
    }
    return image;
}

/// Traces in a process that may take `room` bytes more and 20 s; its exit status, or -1 for a
/// signal.
int outcomeOf(const QImage& image, const QString& key, double value, rlim_t room) {
    const pid_t child = fork();
    if (child == 0) {
        alarm(20);
        const rlim_t most = addressSpace() + room;
        const rlimit limit{most, most};
        if (setrlimit(RLIMIT_AS, &limit) != 0)
            _exit(OtherException);
        try {
            OvTraceBitmap tracer;
            tracer.setOption("monochrome", 0.0);
            tracer.setOption(key, value);
            tracer.trace(image);
            _exit(Traced);
        } catch (const std::bad_alloc&) {
            _exit(NoMemory);
        } catch (...) {
            _exit(OtherException);
        }
    }
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

constexpr rlim_t Megabyte = 1 << 20;

} // namespace

TEST(MemoryLimit, NoValueOfAnyOptionEndsTheProcess) {
    const QImage image = gradients();
    for (const QString& key : defaultOptions().keys() + QStringList{"usealpha", "usebrightness"}) {
        for (const double value : {-1e300, -1.0, 0.0, 2147483647.0, 1e9, 1e300}) {
            // So many cycles take the time that was asked for.
            if (key == "colorquantcycles" && value > 1e6 && value < 1e300)
                continue;
            const int outcome = outcomeOf(image, key, value, 256 * Megabyte);
            EXPECT_TRUE(outcome == Traced || outcome == NoMemory)
                << key.toStdString() << " " << value << ": " << outcome;
        }
    }
}

TEST(MemoryLimit, AThousandMillionColorsFindNoMemory) {
    EXPECT_EQ(outcomeOf(gradients(), "numberofcolors", 1e9, 512 * Megabyte), NoMemory);
    EXPECT_EQ(outcomeOf(gradients(), "numberofcolors", 1e8, 1024 * Megabyte), NoMemory)
        << "the palette finds room, the list of its colours does not";
}

TEST(MemoryLimit, ATraceThatFindsLittleMemorySaysSo) {
    const QImage image = gradients().scaled(1600, 1200);
    int failures = 0;
    for (rlim_t room = 1; room <= 64; room += 3) {
        const int outcome = outcomeOf(image, "pathomit", 0.0, room * Megabyte);
        EXPECT_TRUE(outcome == Traced || outcome == NoMemory) << room << " MB: " << outcome;
        failures += outcome == NoMemory ? 1 : 0;
    }
    EXPECT_GT(failures, 3);
}

#endif
