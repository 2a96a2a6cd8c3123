#include "plan.h"

#include "resultnames.h"
#include <drawing/files/files.h>
#include <drawing/input.h>
#include <drawing/writers/formats.h>

#include <QHash>

namespace {

QList<Job> jobsOf(const FoundImage& image, const PageChoice& choice) {
    Job job;
    job.image = image.name;
    job.below = image.below;
    if (choice.isSingle()) {
        job.page = choice.ranges[0].first;
        job.pages = 0;
        return {job};
    }
    job.pages = countPages(image.name);
    QList<Job> jobs;
    for (const int page : choice.pagesOf(job.pages)) {
        job.page = page;
        jobs.append(job);
    }
    return jobs;
}

/// The images by the identity of their files.
QHash<QString, QString> filesOfImages(const Plan& plan) {
    QHash<QString, QString> images;
    for (const Job& job : plan.jobs) {
        const FileFacts facts = job.image == "-" ? factsOfStandardInput() : factsOf(job.image);
        if (facts.kind == FileKind::Regular)
            images.insert(facts.identity, job.image == "-" ? "the standard input" : job.image);
    }
    return images;
}

void checkReplacing(const Plan& plan, const Arguments& arguments) {
    const QHash<QString, QString> images = filesOfImages(plan);
    const auto checkImages = [&](const QString& name, const char* what) {
        const FileFacts facts = factsOf(name);
        if (facts.kind == FileKind::Regular && images.contains(facts.identity))
            throw FileError(QString("%1: %2 would replace the image %3")
                                .arg(name, what, images[facts.identity]));
        return facts.kind == FileKind::Regular;
    };
    for (const Job& job : plan.jobs) {
        const bool exists = job.result != "-" && checkImages(job.result, "the result");
        if (exists && arguments.output.isEmpty() && !arguments.overwrite &&
            hasPictureEnding(job.result))
            throw FileError(QString("%1: is there already and may be an image; --overwrite "
                                    "replaces it, --name and --output-dir lead elsewhere")
                                .arg(job.result));
    }
    const QString& settings = arguments.saveSettings;
    if (settings.isEmpty())
        return;
    checkImages(settings, "the settings");
    checkSettingsFile(settings);
    for (const Job& job : plan.jobs) {
        if (job.result != "-" && placeOf(job.result) == placeOf(settings))
            throw FileError(
                QString("%1: settings and a result would both be written to it").arg(settings));
    }
}

/// How many results there are, and whether one file was named for them.
void checkCount(const Plan& plan, const Arguments& arguments) {
    if (plan.jobs.size() > 1 && !arguments.output.isEmpty() &&
        !findFormat(arguments.format)->takesSeveral)
        throw UsageError(QString("a %1 file takes one image alone; leave --output away to get one "
                                 "each")
                             .arg(arguments.format.toUpper()));
}

} // namespace

Plan makePlan(const Arguments& arguments) {
    const ImageList list =
        findImages(arguments.inputs, arguments.recursive, arguments.outputFolder);
    Plan plan;
    plan.skipped = list.skipped;
    for (const QString& folder : list.folders)
        plan.skipped.append(QString("%1: a folder, into which --recursive goes").arg(folder));
    plan.others = list.others;
    plan.failures = list.failures;
    for (const FoundImage& image : list.images) {
        try {
            plan.jobs.append(jobsOf(image, arguments.pages));
        } catch (const FileError& error) {
            plan.failures.append(error.what());
        }
    }
    plan.isBatch = list.hasFolder || list.images.size() > 1 || plan.jobs.size() > 1;
    if (!plan.failures.isEmpty() && !arguments.continueOnError)
        throw FileError(plan.failures.first());
    checkCount(plan, arguments);
    nameResults(plan.jobs, arguments);
    checkReplacing(plan, arguments);
    return plan;
}

void checkSettingsFile(const QString& fileName) {
    if (factsOf(fileName).kind == FileKind::Regular && isPicture(fileName))
        throw FileError(QString("%1: the settings would replace an image").arg(fileName));
}

QString nameOf(const Job& job) {
    return job.pages > 1 || job.page > 1
               ? QString("%1 page %2%3")
                     .arg(job.image)
                     .arg(job.page)
                     .arg(job.pages > 1 ? QString(" of %1").arg(job.pages) : QString())
               : job.image;
}
