#pragma once

#include "dxftext.h"
#include "writeroptions.h"

#include "../drawing.h"

#include <QRectF>

/// A layer of the file.
struct DxfLayer {
    QByteArray name; ///< of A-Z, 0-9, "_" and "-"
    QColor color;
};

/// A line type of dashes and gaps.
struct DxfLineType {
    QByteArray name;
    QList<double> lengths; ///< dash, gap, dash, gap ... in units
};

/// What the tables of a file depend on.
struct DxfContents {
    QRectF extents;    ///< the box around the entities
    int entityHandles; ///< how many handles the entities need
    QList<DxfLayer> layers;
    QList<DxfLineType> lineTypes;
    bool hasOwnData; ///< whether entities carry data of the application
};

/// What surrounds the entities of a DXF file: all that a reader of its version looks for.
class DxfDocument {
public:
    /// The name under which entities carry data of their own.
    static constexpr const char* Application = "OVTRACE";

    DxfDocument(DxfText& text, DxfVersion version, Unit unit, const DxfContents& contents);

    /// Everything before the entities, and everything after them.
    void begin();
    void end();

    /// Starts an entity: its type, handle, owner and layer.
    void beginEntity(const char* type, const QByteArray& layer);

private:
    void header();
    void tables();
    void viewports();
    void lineTypes();
    void dashedLineType(const DxfLineType& type);
    void layerTable();
    void blocks();
    void objects();
    void layout(const char* name, int handle, int blockRecord, int order);

    void beginTable(const char* name, int handle, int entries);
    void beginRecord(const char* type, int handle, int table, const char* subclass,
                     QByteArrayView name);
    void block(const char* name, int record, int begin, int end, bool paper);
    bool hasObjects() const {
        return version != DxfVersion::R12;
    }

    DxfText& text;
    DxfVersion version;
    Unit unit;
    const DxfContents& contents;
    const QRectF& extents;
    int lastHandle;
    int nextHandle;
};
