#pragma once

#include "plan.h"

/// Throws UsageError when it is no template for names of results: its words are {name}, {ext},
/// {format}, {page} and {n}.
void checkNameTemplate(const QString& nameTemplate);

/// Gives each job its result: the file that was named, or one after the template. Where two images
/// would have the same result, their endings join their names. Throws FileError where that does
/// not help.
void nameResults(QList<Job>& jobs, const Arguments& arguments);

/// The same for all spellings of a file's name, whether it is there or not.
QString placeOf(const QString& fileName);
