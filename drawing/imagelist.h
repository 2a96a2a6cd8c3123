#pragma once

#include <QList>
#include <QString>
#include <QStringList>

/// An image file among those to trace.
struct FoundImage {
    QString name;
    QString below; ///< its folder, seen from the one that was named; empty for that one itself
};

/// What was found where one was sent to look.
struct ImageList {
    QList<FoundImage> images; ///< in order of the inputs, in folders by name
    QStringList skipped;      ///< files of folders that are left out, with the reason
    QStringList folders;      ///< in folders that were named, and not gone into
    qsizetype others = 0;     ///< further files of folders, whose names are no pictures' names
    QStringList failures;     ///< inputs that cannot be used, with the reason
    bool hasFolder = false;   ///< whether an input is a folder
};

/// The images among the inputs, folders replaced by the image files in them, with `recursive` by
/// those of the folders in them, too. The folder `output`, if it lies in one of them, is left out.
ImageList findImages(const QStringList& inputs, bool recursive, const QString& output);
