#pragma once

#include "arguments.h"
#include <drawing/imagelist.h>

/// One result to make.
struct Job {
    QString image;
    QString below;  ///< see FoundImage
    int page = 1;   ///< of the image
    int pages = 1;  ///< that the file has; 0 when it was not asked
    QString result; ///< the file; "-" for the standard output
};

/// All that a run is going to do, checked before it writes anything.
struct Plan {
    QList<Job> jobs;
    QStringList skipped;  ///< files and folders that are left out, with the reason
    qsizetype others = 0; ///< likewise
    QStringList failures; ///< inputs that cannot be used
    bool isBatch = false; ///< whether there may be more than one result
};

/// Finds the images and names the results. Throws FileError when a result would take the place of
/// an image or of another result, and UsageError when one file cannot hold all of them.
Plan makePlan(const Arguments& arguments);

/// Throws FileError when saving settings to this file would replace an image.
void checkSettingsFile(const QString& fileName);

/// What messages call a job: its image, with the page where there are several.
QString nameOf(const Job& job);
