#pragma once

#include "../drawing.h"

class QIODevice;

/// Turns a drawing into one file format.
class Writer {
public:
    virtual ~Writer() = default;

    /// Writes a whole file; throws std::runtime_error when the format cannot hold the drawing.
    virtual void write(const Drawing& drawing, QIODevice& device) const = 0;
};
