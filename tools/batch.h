#pragma once

#include "arguments.h"

/// What became of a batch.
struct BatchResult {
    bool failed = false; ///< an image could not be read or its result not be written
    bool empty = false;  ///< a result has no outlines
};

/// Traces all images, one after another or several at a time in processes of their own. A result
/// is the same either way. Throws FileError at the first failure unless told to go on.
BatchResult traceAll(const QStringList& images, const Arguments& arguments);
