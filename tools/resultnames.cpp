#include "resultnames.h"

#include <drawing/files/files.h>

#include <QDir>
#include <QFileInfo>
#include <QHash>
#include <QRegularExpression>
#include <QSet>

namespace {

const QRegularExpression& word() {
    static const QRegularExpression form("\\{([^{}]*)\\}");
    return form;
}

const QStringList& words() {
    static const QStringList names{"name", "ext", "format", "page", "n"};
    return names;
}

/// As many digits as the largest number has, so that names sort in the order of the numbers.
QString padded(qsizetype number, qsizetype largest) {
    return QString::number(number).rightJustified(QString::number(largest).size(), '0');
}

/// The template with its words filled in; braces in what they stand for are left alone.
QString filledIn(const QString& nameTemplate, const QHash<QString, QString>& values) {
    QString result;
    qsizetype end = 0;
    for (auto match = word().globalMatch(nameTemplate); match.hasNext();) {
        const auto each = match.next();
        result += nameTemplate.mid(end, each.capturedStart() - end) + values[each.captured(1)];
        end = each.capturedEnd();
    }
    return result + nameTemplate.mid(end);
}

QString folderOf(const Job& job, const Arguments& arguments) {
    if (arguments.outputFolder.isEmpty())
        return job.image == "-" ? QString(".") : QFileInfo(job.image).path();
    return job.below.isEmpty() ? arguments.outputFolder : arguments.outputFolder + '/' + job.below;
}

class Naming {
public:
    Naming(QList<Job>& jobs, const Arguments& arguments) : jobs(jobs), arguments(arguments) {
        for (const Job& job : jobs)
            jobsOfImage[job.image] += 1;
    }

    void run() {
        for (qsizetype i = 0; i < jobs.size(); ++i)
            jobs[i].result = resultOf(i);
        // A name with its ending may in turn be another's: until nothing collides any more.
        while (joinCollisions()) {
        }
    }

private:
    QString resultOf(qsizetype i) const {
        const Job& job = jobs[i];
        const QFileInfo image(job.image);
        const bool isInput = job.image == "-";
        const bool needsPage =
            jobsOfImage[job.image] > 1 && !arguments.nameTemplate.contains("{page}");
        const QString base = isInput              ? QString("traced")
                             : joined.contains(i) ? image.fileName()
                                                  : image.completeBaseName();
        const QString page = padded(job.page, job.pages);
        const QString name =
            filledIn(arguments.nameTemplate, {{"name", base},
                                              {"ext", isInput ? QString() : image.suffix()},
                                              {"format", arguments.format},
                                              {"page", page},
                                              {"n", padded(i + 1, jobs.size())}});
        return folderOf(job, arguments) + '/' + name + (needsPage ? '-' + page : QString()) + '.' +
               arguments.format;
    }

    /// Joins the endings to names that collide. Returns whether there were any.
    bool joinCollisions() {
        QHash<QString, qsizetype> jobAt;
        QSet<qsizetype> colliding;
        for (qsizetype i = 0; i < jobs.size(); ++i) {
            const QString place = placeOf(jobs[i].result);
            const auto other = jobAt.constFind(place);
            if (other == jobAt.constEnd()) {
                jobAt.insert(place, i);
                continue;
            }
            if (joined.contains(i) && joined.contains(*other))
                fail(*other, i);
            colliding += {i, *other};
        }
        const qsizetype before = joined.size();
        for (const qsizetype i : colliding) {
            joined.insert(i);
            jobs[i].result = resultOf(i);
        }
        return joined.size() > before;
    }

    [[noreturn]] void fail(qsizetype one, qsizetype other) const {
        throw FileError(QString("%1 and %2 would both be written to %3; choose another --name, for "
                                "instance {name}-{n}")
                            .arg(nameOf(jobs[one]), nameOf(jobs[other]), jobs[one].result));
    }

    QList<Job>& jobs;
    const Arguments& arguments;
    QHash<QString, int> jobsOfImage;
    QSet<qsizetype> joined; ///< jobs whose images' endings are part of their names
};

} // namespace

void checkNameTemplate(const QString& nameTemplate) {
    const QString form = "--name takes a file name with {" + words().join("}, {") + "} in it";
    if (nameTemplate.isEmpty() || nameTemplate.contains('/'))
        throw UsageError(form);
    for (auto match = word().globalMatch(nameTemplate); match.hasNext();) {
        const QString each = match.next().captured(1);
        if (!words().contains(each))
            throw UsageError(QString("%1, not {%2}").arg(form, each));
    }
}

void nameResults(QList<Job>& jobs, const Arguments& arguments) {
    if (arguments.output.isEmpty()) {
        Naming(jobs, arguments).run();
        return;
    }
    for (Job& job : jobs)
        job.result = arguments.output;
}

QString placeOf(const QString& fileName) {
    const QFileInfo file(fileName);
    const QString folder = factsOf(file.path()).identity;
    QString name = folder.isEmpty() ? QDir::cleanPath(QDir::current().absoluteFilePath(fileName))
                                    : folder + '/' + file.fileName();
#ifdef Q_OS_WIN
    return name.toLower();
#else
    return name;
#endif
}
