#include "progress.h"

#include <cstdio>

#ifdef _WIN32
#include <io.h>
#else
#include <unistd.h>
#endif

namespace {

constexpr int BarWidth = 24;

bool isTerminal() {
#ifdef _WIN32
    return _isatty(_fileno(stderr)) != 0;
#else
    return isatty(STDERR_FILENO) != 0;
#endif
}

} // namespace

Progress::Progress(qsizetype images, double pixels, bool quiet)
    : images(images), pixels(pixels), silent(quiet || images < 2), isBar(isTerminal()) {
    timer.start();
    draw();
}

Progress::~Progress() {
    clear();
}

void Progress::advance(double pixels, const QString& line) {
    ++doneImages;
    donePixels += pixels;
    if (silent)
        return;
    if (!isBar)
        std::fprintf(stderr, "%s\n", qPrintable(line));
    draw();
}

void Progress::message(const QString& line) {
    clear();
    std::fprintf(stderr, "%s\n", qPrintable(line));
    draw();
}

void Progress::clear() const {
    if (!silent && isBar)
        std::fprintf(stderr, "\r\033[K");
}

void Progress::draw() const {
    if (silent || !isBar)
        return;
    const double share = pixels > 0.0 ? donePixels / pixels : 0.0;
    const int filled = static_cast<int>(share * BarWidth);
    const double seconds = static_cast<double>(timer.elapsed()) / 1000.0;
    const QString left =
        share > 0.0 ? QString("%1 s left").arg(seconds / share - seconds, 0, 'f', 0) : QString();
    std::fprintf(stderr, "\r\033[K[%s%s] %lld/%lld files, %.1f/%.1f Mpx %s",
                 qPrintable(QString(filled, '#')), qPrintable(QString(BarWidth - filled, '-')),
                 static_cast<long long>(doneImages), static_cast<long long>(images),
                 donePixels / 1e6, pixels / 1e6, qPrintable(left));
    std::fflush(stderr);
}
