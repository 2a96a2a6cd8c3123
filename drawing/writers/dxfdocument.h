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

/// What surrounds the entities of a DXF file: all that a reader of its version looks for.
class DxfDocument {
public:
    /// `extents` is the box around the entities, which need `entityHandles` handles.
    DxfDocument(DxfText& text, DxfVersion version, Unit unit, const QRectF& extents,
                int entityHandles, const QList<DxfLayer>& layers);

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
    QRectF extents;
    int lastHandle;
    const QList<DxfLayer>& layers;
    int nextHandle;
};
