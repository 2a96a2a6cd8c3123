// Whole processes side by side: ovtrace and potrace turn the same 1-bit picture into SVG, and
// ovtrace traces photographs, whose times are compared with a copy of their pixels. Prints medians
// and ratios as a Markdown table.
//
// Usage: process_bench OVTRACE RUNS BITMAP... [-- PHOTO... [-- LARGE...]]

#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QImage>
#include <QImageReader>
#include <QProcess>
#include <QTemporaryDir>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <stdexcept>
#include <vector>

namespace {

double secondsOf(const QString& program, const QStringList& arguments) {
    QElapsedTimer timer;
    QProcess process;
    timer.start();
    process.start(program, arguments);
    process.waitForFinished(-1);
    const double seconds = static_cast<double>(timer.nsecsElapsed()) / 1e9;
    if (process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0)
        throw std::runtime_error((program + " has failed").toStdString());
    return seconds;
}

double median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

class Comparison {
public:
    Comparison(const QString& ovtrace, int runs) : ovtrace(ovtrace), runs(runs) {
    }

    void bitmap(const QString& name) const {
        compare(QImage(name), QFileInfo(name).fileName());
    }

    /// The picture as a clean bitmap of 35 megapixels, the size of a drawing at 600 dpi.
    void largeBitmap(const QString& name) const {
        const QImage image = QImage(name).convertToFormat(QImage::Format_Grayscale8);
        const double scale = std::sqrt(35.0 / megapixels(image));
        compare(image.scaled(static_cast<int>(image.width() * scale),
                             static_cast<int>(image.height() * scale), Qt::IgnoreAspectRatio,
                             Qt::SmoothTransformation),
                QFileInfo(name).fileName() + ", enlarged");
    }

    void photo(const QString& name) const {
        const QImage image(name);
        std::vector<double> ours;
        for (int i = 0; i < runs; ++i)
            ours.push_back(secondsOf(ovtrace, {"-o", folder.filePath("o.svg"), name}));
        std::printf("| %s | %.1f | %.3f | – | %.1f Mpx/s; %.0f times a copy |\n",
                    qPrintable(QFileInfo(name).fileName()), megapixels(image), median(ours),
                    megapixels(image) / median(ours), median(ours) / copySeconds(image));
    }

private:
    void compare(const QImage& image, const QString& title) const {
        const QString pbm = folder.filePath("picture.pbm");
        if (!image.convertToFormat(QImage::Format_Mono, Qt::ThresholdDither).save(pbm, "PBM"))
            throw std::runtime_error(title.toStdString() + " cannot be made a bitmap");
        std::vector<double> ours;
        std::vector<double> theirs;
        for (int i = 0; i < runs; ++i) {
            theirs.push_back(secondsOf("potrace", {"-s", "-o", folder.filePath("p.svg"), pbm}));
            ours.push_back(
                secondsOf(ovtrace, {"--mode", "bw", "-o", folder.filePath("o.svg"), pbm}));
        }
        std::printf("| %s | %.1f | %.3f | %.3f | %.2f |\n", qPrintable(title), megapixels(image),
                    median(ours), median(theirs), median(ours) / median(theirs));
    }

    /// A memcpy() of the picture as 32-bit pixels, between buffers that have been written before.
    double copySeconds(const QImage& image) const {
        const QImage source = image.convertToFormat(QImage::Format_RGB32);
        QImage target = source.copy();
        std::vector<double> seconds;
        for (int i = 0; i < runs; ++i) {
            QElapsedTimer timer;
            timer.start();
            std::memcpy(target.bits(), source.constBits(),
                        static_cast<std::size_t>(source.sizeInBytes()));
            seconds.push_back(static_cast<double>(timer.nsecsElapsed()) / 1e9);
        }
        return median(seconds);
    }

    static double megapixels(const QImage& image) {
        return static_cast<double>(image.width()) * image.height() / 1e6;
    }

    QString ovtrace;
    int runs;
    QTemporaryDir folder;
};

} // namespace

int main(int argc, char* argv[]) {
    QImageReader::setAllocationLimit(0);
    if (argc < 4) {
        std::fprintf(stderr,
                     "usage: process_bench OVTRACE RUNS BITMAP... [-- PHOTO... [-- LARGE...]]\n");
        return 2;
    }
    const Comparison comparison(QString::fromLocal8Bit(argv[1]),
                                QString::fromLocal8Bit(argv[2]).toInt());
    std::printf("| picture | Mpx | ovtrace, s | potrace, s | ratio |\n|---|---|---|---|---|\n");
    int part = 0;
    try {
        for (int i = 3; i < argc; ++i) {
            const QString name = QString::fromLocal8Bit(argv[i]);
            if (name == "--")
                ++part;
            else if (part == 0)
                comparison.bitmap(name);
            else if (part == 1)
                comparison.photo(name);
            else
                comparison.largeBitmap(name);
        }
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}
