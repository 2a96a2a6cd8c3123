#pragma once

#include "writer.h"
#include "writeroptions.h"

/// A GeoJSON feature collection, curves as straight pieces within the deviation, with colour,
/// opacity and layer as properties: a polygon an outline; a polygon with its holes a region, of
/// which neighbours share every corner; a line string a stroke, with its kind and width.
class GeoJsonWriter final : public Writer {
public:
    explicit GeoJsonWriter(const WriterOptions& options) : options(options) {
    }
    void write(const Drawing& drawing, QIODevice& device) const override;

private:
    WriterOptions options;
};
