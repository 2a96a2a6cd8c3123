#pragma once

#include "input.h"
#include "settings.h"

/// Throws FileError when decoding an image of this size would take more memory than there is.
void checkDecodingMemory(const QString& name, QSize size, QImage::Format format);

/// Throws FileError when tracing the image and writing the result would take more memory than there
/// is. Where that is possible at all, a sample of the image is traced and its memory measured: how
/// many corners there are decides, from next to nothing for a drawing to hundreds of bytes a pixel
/// for noise. `writing` is what the format takes in bytes, whatever the image shows.
void checkTracingMemory(const QString& name, const InputImage& input, const TraceSettings& settings,
                        double writing);
