#include "formats.h"

#include "dxfwriter.h"
#include "geojsonwriter.h"
#include "jsonwriter.h"
#include "pdfwriter.h"
#include "pngwriter.h"
#include "svgwriter.h"

namespace {

template <typename Format> std::unique_ptr<Writer> make(const WriterOptions& options) {
    return std::make_unique<Format>(options);
}

} // namespace

const QList<FileFormat>& fileFormats() {
    static const QList<FileFormat> formats{
        {"svg", "Scalable Vector Graphics, curves exact", make<SvgWriter>},
        {"dxf", "Drawing Exchange Format: R2010, R2000 or R12", make<DxfWriter>},
        {"pdf", "Portable Document Format, in true size", make<PdfWriter>},
        {"png", "a picture of the result", make<PngWriter>},
        {"json", "the outlines as numbers, exact; one line a drawing", make<JsonWriter>, true},
        {"geojson", "one feature an outline, curves as straight pieces", make<GeoJsonWriter>},
    };
    return formats;
}

QStringList formatNames() {
    QStringList names;
    for (const FileFormat& format : fileFormats())
        names.append(format.name);
    return names;
}

const FileFormat* findFormat(const QString& name) {
    for (const FileFormat& format : fileFormats()) {
        if (name == format.name)
            return &format;
    }
    return nullptr;
}
