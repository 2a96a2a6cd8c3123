#pragma once

#include "input.h"
#include "settings.h"

/// Throws MemoryError when decoding an image of this size would take more memory than there is for
/// each of the processes that work `together`.
void checkDecodingMemory(const QString& name, QSize size, QImage::Format format, int together);

/// What else takes memory.
struct MemoryBeside {
    double writing = 0.0; ///< bytes that the format takes, whatever the image shows
    int together = 1;     ///< processes that share the memory
};

/// Throws MemoryError when tracing the image and writing the result would take more memory than
/// there is. Where that is possible at all, a sample of the image is traced and its memory
/// measured: how many corners there are decides, from next to nothing for a drawing to hundreds of
/// bytes a pixel for noise.
void checkTracingMemory(const QString& name, const InputImage& input, const TraceSettings& settings,
                        const MemoryBeside& beside);
