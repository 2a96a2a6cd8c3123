#include "progress.h"

#include "interrupts.h"
#include <drawing/files/filename.h>

#include <algorithm>
#include <cstdio>

#ifdef _WIN32
#include <io.h>
#else
#include <unistd.h>
#endif

namespace {

constexpr int BarWidth = 24;
constexpr qint64 DrawInterval = 100;    ///< milliseconds between two states of the bar
constexpr qint64 LongForOneImage = 500; ///< milliseconds until one image alone gets a bar

bool isTerminal() {
#ifdef _WIN32
    return _isatty(_fileno(stderr)) != 0;
#else
    return isatty(STDERR_FILENO) != 0;
#endif
}

void say(const QString& line) {
    std::fprintf(stderr, "%s\n", presentable(line).toUtf8().constData());
}

} // namespace

Progress::Progress(qsizetype images, double pixels, bool quiet)
    : images(images), pixels(pixels), isSilent(quiet), isBar(isTerminal()) {
    timer.start();
    draw();
}

Progress::~Progress() {
    clear();
}

void Progress::advance(double imagePixels, const QString& line) {
    ++doneImages;
    donePixels += imagePixels;
    share = 0.0;
    if (isSilent)
        return;
    if (!isBar && images > 1)
        say(line);
    draw();
}

void Progress::setShare(double newShare) {
    share = newShare;
    if (isBar && timer.elapsed() >= drawn + DrawInterval)
        draw();
}

void Progress::message(const QString& line) {
    clear();
    say(line);
    draw();
}

void Progress::end(const QString& line) {
    clear();
    hasEnded = true;
    say(line);
}

void Progress::clear() const {
    if (!isSilent && isBar)
        std::fprintf(stderr, "\r\033[K");
    setBarIsShown(false);
}

void Progress::draw() {
    if (isSilent || !isBar || hasEnded || (images < 2 && timer.elapsed() < LongForOneImage))
        return;
    drawn = timer.elapsed();
    setBarIsShown(true);
    const double now = images > 1 ? 0.0 : share * pixels;
    const double done = pixels > 0.0 ? std::min(1.0, (donePixels + now) / pixels) : 0.0;
    const int filled = static_cast<int>(done * BarWidth);
    const double seconds = static_cast<double>(drawn) / 1000.0;
    const QString left =
        done > 0.0 ? QString("%1 s left").arg(seconds / done - seconds, 0, 'f', 0) : QString();
    const QString count = images > 1 ? QString("%1/%2 files, %3/%4 Mpx")
                                           .arg(doneImages)
                                           .arg(images)
                                           .arg(donePixels / 1e6, 0, 'f', 1)
                                           .arg(pixels / 1e6, 0, 'f', 1)
                                     : QString("%1 %").arg(done * 100.0, 0, 'f', 0);
    std::fprintf(stderr, "\r\033[K[%s%s] %s %s", qPrintable(QString(filled, '#')),
                 qPrintable(QString(BarWidth - filled, '-')), qPrintable(count), qPrintable(left));
    std::fflush(stderr);
}
