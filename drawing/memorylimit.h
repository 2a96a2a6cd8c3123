#pragma once

#include <QString>

/// The memory in bytes that this process may use: the computer's, or less where its control groups
/// say so, in equal shares for the processes that work `together`; or less where the limit of its
/// address space says so. 0 when it is not known.
double memoryLimit(int together = 1);

/// The smallest limit of the control groups of a process, of versions 1 and 2, and of the groups
/// above; 0 when there is none. `process` is the file that names the groups (/proc/self/cgroup),
/// `root` the folder where they are mounted (/sys/fs/cgroup).
double controlGroupLimit(const QString& process, const QString& root);
