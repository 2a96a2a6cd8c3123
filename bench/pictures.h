#pragma once

#include <QImage>
#include <QList>
#include <QPair>
#include <QString>

#include <string>

/// A picture to measure with, and the options that suit it.
struct Picture {
    std::string name;
    QImage image;
    QList<QPair<QString, double>> options;
};

/// One picture a class: photo, page, clip art, line art and noise.
///
/// They come from the folder that OVTRACE_CORPUS names (its classes are folders); without it the
/// project's samples, tiled to several megapixels, take their place.
QList<Picture> pictures();

/// Noise of a megapixel and smaller or larger squares of it.
QImage noise(int side);

/// The image repeated until it has about `pixels` pixels, or cut down to them.
QImage tiled(const QImage& image, qint64 pixels);
