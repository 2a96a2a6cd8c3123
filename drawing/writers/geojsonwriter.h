#pragma once

#include "writer.h"
#include "writeroptions.h"

/// A GeoJSON feature collection: one polygon an outline, curves as straight pieces within the
/// deviation, with its colour, opacity and layer as properties.
class GeoJsonWriter final : public Writer {
public:
    explicit GeoJsonWriter(const WriterOptions& options) : options(options) {
    }
    void write(const Drawing& drawing, QIODevice& device) const override;

private:
    WriterOptions options;
};
