#include "memorylimit.h"

#include "memory.h"

#include <QFile>

#include <algorithm>

#ifndef _WIN32
#include <sys/resource.h>
#endif

namespace {

/// The smaller of two limits, of which 0 is none.
double smaller(double a, double b) {
    return a > 0.0 && b > 0.0 ? std::min(a, b) : std::max(a, b);
}

QByteArray contentsOf(const QString& name) {
    QFile file(name);
    return file.open(QIODevice::ReadOnly) ? file.readAll().trimmed() : QByteArray();
}

/// A limit as a group's file has it; "max", or a number too large to be meant, is none.
double limitIn(const QString& fileName) {
    constexpr double NoLimit = 4e18; // version 1 writes the largest number of whole pages
    bool isNumber = false;
    const double value = contentsOf(fileName).toDouble(&isNumber);
    return isNumber && value < NoLimit ? value : 0.0;
}

/// The smallest limit of a group and those above it.
double limitAlong(const QString& root, QString group, const char* file) {
    double limit = limitIn(root + '/' + file);
    while (group.size() > 1) {
        limit = smaller(limit, limitIn(root + group + '/' + file));
        group.truncate(group.lastIndexOf('/'));
    }
    return limit;
}

} // namespace

double controlGroupLimit(const QString& process, const QString& root) {
    double limit = 0.0;
    // Lines "number:controllers:group"; version 2 has the number 0 and no controllers.
    for (const QByteArray& line : contentsOf(process).split('\n')) {
        const QByteArrayList parts = line.split(':');
        if (parts.size() < 3)
            continue;
        const QString group = QString::fromUtf8(parts.mid(2).join(':'));
        if (parts[1].isEmpty())
            limit = smaller(limit, limitAlong(root, group, "memory.max"));
        else if (parts[1].split(',').contains("memory"))
            limit = smaller(limit, limitAlong(root + "/memory", group, "memory.limit_in_bytes"));
    }
    return limit;
}

double memoryLimit(int together) {
    double limit = physicalMemory();
#ifndef _WIN32
    limit = smaller(limit, controlGroupLimit("/proc/self/cgroup", "/sys/fs/cgroup"));
#endif
    limit /= together;
#ifndef _WIN32
    rlimit space{};
    if (getrlimit(RLIMIT_AS, &space) == 0 && space.rlim_cur != RLIM_INFINITY)
        limit = smaller(limit, static_cast<double>(space.rlim_cur));
#endif
    return limit;
}
