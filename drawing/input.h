#pragma once

#include "fileresolution.h"
#include "settings.h"

#include <QImage>

/// What is known of where an image lies.
struct ImagePlace {
    FileResolution resolution;       ///< as the file says
    std::optional<QTransform> world; ///< from drawing coordinates
};

/// An image as it is to be traced.
struct InputImage {
    QImage image;
    QString title; ///< the file's name without folder and ending
    ImagePlace place;
    bool isTruncated = false; ///< whether the file ends too early; what is missing is blank
};

/// Names of the formats that are read, as far as the installation of Qt has them.
QStringList readableFormats();

/// Whether a file's name ends as pictures' names do.
bool hasPictureEnding(const QString& fileName);

/// Whether a file's contents begin as a picture's do. False when it cannot be read.
bool isPicture(const QString& fileName);

/// How many pages or frames a file has, one at least; "-" has one. Throws FileError.
int countPages(const QString& fileName);

/// Reads an image, turned upright, cut and put on its background as asked for; "-" is the standard
/// input. The file's contents decide about its format. Throws FileError when it is no image that
/// can be read, or one that is too large.
InputImage readInput(const QString& fileName, const InputRequest& request);
