#pragma once

#include "settings.h"

#include <QImage>

/// An image as it is to be traced.
struct InputImage {
    QImage image;
    QString title;            ///< the file's name without folder and ending
    double dotsPerInch = 0.0; ///< as the file says; 0 when it does not
};

/// Names of the formats that are read, as far as the installation of Qt has them.
QStringList readableFormats();

/// The images among the inputs, folders replaced by the image files in them, in order of name.
/// Throws FileError.
QStringList expandInputs(const QStringList& inputs);

/// Reads an image, turned upright, cut and put on its background as asked for; "-" is the standard
/// input. The file's contents decide about its format. Throws FileError when it is no image that
/// can be read, or one that is too large.
InputImage readInput(const QString& fileName, const InputRequest& request);
