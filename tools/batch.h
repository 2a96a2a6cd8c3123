#pragma once

#include "plan.h"

/// What became of a batch.
struct BatchResult {
    qsizetype traced = 0; ///< results written, those without outlines among them
    qsizetype empty = 0;  ///< results without outlines
    qsizetype failed = 0; ///< inputs that could not be read, or results that could not be written
    QString failure;      ///< the first one, when it ended the batch
    bool lackedMemory = false; ///< whether that was too little memory
};

/// Traces all images of the plan, one after another or several at a time in processes of their own.
/// A result is the same either way. Throws what went wrong with an image traced alone.
BatchResult traceAll(const Plan& plan, const Arguments& arguments);
