#include "dxfdocument.h"

#include "dxfcolors.h"

#include <numeric>

namespace {

/// Handles of what every file has. Layers and entities follow from FirstFree on.
enum Handle : int {
    VPortTable = 1,
    LTypeTable,
    LayerTable,
    StyleTable,
    ViewTable,
    UcsTable,
    AppIdTable,
    DimStyleTable,
    BlockRecordTable,
    ActiveVPort,
    ByBlock,
    ByLayer,
    Continuous,
    LayerZero,
    StandardStyle,
    AcadAppId,
    StandardDimStyle,
    ModelRecord,
    PaperRecord,
    ModelBlock,
    ModelBlockEnd,
    PaperBlock,
    PaperBlockEnd,
    RootDictionary,
    GroupDictionary,
    LayoutDictionary,
    MLineStyleDictionary,
    PlotSettingsDictionary,
    PlotStyleDictionary,
    PlotStyleNormal,
    StandardMLineStyle,
    ModelLayout,
    PaperLayout,
    OwnAppId,
    FirstFree = 0x100
};

int insertionUnits(Unit unit) {
    switch (unit) {
    case Unit::Inch:
        return 1;
    case Unit::Foot:
        return 2;
    case Unit::Millimetre:
        return 4;
    case Unit::Centimetre:
        return 5;
    case Unit::Metre:
        return 6;
    default:
        return 0;
    }
}

const char* acadVersion(DxfVersion version) {
    switch (version) {
    case DxfVersion::R12:
        return "AC1009";
    case DxfVersion::R2000:
        return "AC1015";
    default:
        return "AC1024";
    }
}

} // namespace

DxfDocument::DxfDocument(DxfText& text, DxfVersion version, Unit unit, const DxfContents& contents)
    : text(text), version(version), unit(unit), contents(contents), extents(contents.extents),
      lastHandle(FirstFree + static_cast<int>(contents.layers.size() + contents.lineTypes.size()) +
                 contents.entityHandles),
      nextHandle(FirstFree) {
}

void DxfDocument::begin() {
    header();
    if (hasObjects())
        text.groups({{0, "SECTION"}, {2, "CLASSES"}, {0, "ENDSEC"}});
    tables();
    text.groups({{0, "SECTION"}, {2, "BLOCKS"}});
    if (hasObjects())
        blocks();
    text.groups({{0, "ENDSEC"}, {0, "SECTION"}, {2, "ENTITIES"}});
}

void DxfDocument::end() {
    text.group(0, "ENDSEC");
    if (hasObjects())
        objects();
    text.group(0, "EOF");
}

void DxfDocument::beginEntity(const char* type, const QByteArray& layer) {
    text.group(0, type);
    if (hasObjects()) {
        text.handle(5, nextHandle++);
        text.handle(330, ModelRecord);
        text.group(100, "AcDbEntity");
    }
    text.group(8, layer);
}

void DxfDocument::header() {
    text.groups({{0, "SECTION"}, {2, "HEADER"}, {9, "$ACADVER"}, {1, acadVersion(version)}});
    text.groups({{9, "$DWGCODEPAGE"}, {3, "ANSI_1252"}});
    text.group(9, "$INSBASE");
    text.point3(10, {});
    text.group(9, "$EXTMIN");
    text.point3(10, extents.topLeft());
    text.group(9, "$EXTMAX");
    text.point3(10, extents.bottomRight());
    text.group(9, "$LIMMIN");
    text.point(10, extents.topLeft());
    text.group(9, "$LIMMAX");
    text.point(10, extents.bottomRight());
    if (hasObjects()) {
        text.group(9, "$INSUNITS");
        text.group(70, insertionUnits(unit));
        text.group(9, "$MEASUREMENT");
        text.group(70, unit == Unit::Inch || unit == Unit::Foot ? 0 : 1);
        text.group(9, "$HANDSEED");
        text.handle(5, lastHandle);
    }
    text.group(0, "ENDSEC");
}

void DxfDocument::beginTable(const char* name, int handle, int entries) {
    text.groups({{0, "TABLE"}, {2, name}});
    if (hasObjects()) {
        text.handle(5, handle);
        text.groups({{330, "0"}, {100, "AcDbSymbolTable"}});
    }
    text.group(70, entries);
}

void DxfDocument::beginRecord(const char* type, int handle, int table, const char* subclass,
                              QByteArrayView name) {
    text.group(0, type);
    if (hasObjects()) {
        // Dimension styles alone keep their handle in another group.
        text.handle(table == DimStyleTable ? 105 : 5, handle);
        text.handle(330, table);
        text.groups({{100, "AcDbSymbolTableRecord"}, {100, subclass}});
    }
    text.group(2, name);
}

void DxfDocument::viewports() {
    beginTable("VPORT", VPortTable, 1);
    beginRecord("VPORT", ActiveVPort, VPortTable, "AcDbViewportTableRecord", "*ACTIVE");
    text.group(70, 0);
    text.point(10, {0.0, 0.0});
    text.point(11, {1.0, 1.0});
    text.point(12, extents.center());
    text.point(13, {0.0, 0.0});
    text.point(14, {1.0, 1.0});
    text.point(15, {1.0, 1.0});
    text.point3(16, {});
    text.group(36, 1.0);
    text.point3(17, {});
    text.group(40, std::max(extents.height(), 1.0) * 1.1);
    text.group(41, 1.5);
    text.group(42, 50.0);
    text.group(43, 0.0);
    text.group(44, 0.0);
    text.group(50, 0.0);
    text.group(51, 0.0);
    for (const auto& [code, value] : std::initializer_list<std::pair<int, int>>{
             {71, 0}, {72, 100}, {73, 1}, {74, 3}, {75, 0}, {76, 0}, {77, 0}, {78, 0}})
        text.group(code, value);
    text.group(0, "ENDTAB");
}

void DxfDocument::lineTypes() {
    const auto lineType = [this](int handle, const char* name, const char* description) {
        beginRecord("LTYPE", handle, LTypeTable, "AcDbLinetypeTableRecord", name);
        text.group(70, 0);
        text.group(3, description);
        text.group(72, 65);
        text.group(73, 0);
        text.group(40, 0.0);
    };
    const auto own = static_cast<int>(contents.lineTypes.size());
    beginTable("LTYPE", LTypeTable, (hasObjects() ? 3 : 1) + own);
    if (hasObjects()) {
        lineType(ByBlock, "ByBlock", "");
        lineType(ByLayer, "ByLayer", "");
    }
    lineType(Continuous, hasObjects() ? "Continuous" : "CONTINUOUS", "Solid line");
    for (const DxfLineType& each : contents.lineTypes)
        dashedLineType(each);
    text.group(0, "ENDTAB");
}

void DxfDocument::dashedLineType(const DxfLineType& type) {
    beginRecord("LTYPE", nextHandle++, LTypeTable, "AcDbLinetypeTableRecord", type.name);
    text.group(70, 0);
    text.group(3, type.lengths.size() > 2 ? "Dash dot" : "Dashed");
    text.group(72, 65);
    text.group(73, static_cast<int>(type.lengths.size()));
    text.group(40, std::accumulate(type.lengths.begin(), type.lengths.end(), 0.0));
    // Gaps are negative.
    double sign = 1.0;
    for (const double length : type.lengths) {
        text.group(49, sign * length);
        if (hasObjects())
            text.group(74, 0);
        sign = -sign;
    }
}

void DxfDocument::layerTable() {
    const auto layer = [this](int handle, const QByteArray& name, int number, const QColor* color) {
        beginRecord("LAYER", handle, LayerTable, "AcDbLayerTableRecord", name);
        text.group(70, 0);
        text.group(62, number);
        // True colours came after R2000. Black stays the number that dark screens show white.
        const bool isBlack = color != nullptr && (color->rgb() & 0xffffffU) == 0;
        if (color != nullptr && !isBlack && version == DxfVersion::R2010)
            text.group(420, static_cast<int>(color->rgb() & 0xffffffU));
        text.group(6, hasObjects() ? "Continuous" : "CONTINUOUS");
        if (hasObjects()) {
            text.group(370, -3);
            text.handle(390, PlotStyleNormal);
        }
    };
    beginTable("LAYER", LayerTable, static_cast<int>(contents.layers.size()) + 1);
    layer(LayerZero, "0", 7, nullptr);
    for (const DxfLayer& each : contents.layers)
        layer(nextHandle++, each.name, nearestDxfColor(each.color), &each.color);
    text.group(0, "ENDTAB");
}

void DxfDocument::tables() {
    text.groups({{0, "SECTION"}, {2, "TABLES"}});
    viewports();
    lineTypes();
    layerTable();

    beginTable("STYLE", StyleTable, 1);
    beginRecord("STYLE", StandardStyle, StyleTable, "AcDbTextStyleTableRecord",
                hasObjects() ? "Standard" : "STANDARD");
    text.group(70, 0);
    text.group(40, 0.0);
    text.group(41, 1.0);
    text.group(50, 0.0);
    text.group(71, 0);
    text.group(42, 2.5);
    text.groups({{3, "txt"}, {4, ""}, {0, "ENDTAB"}});

    beginTable("VIEW", ViewTable, 0);
    text.group(0, "ENDTAB");
    beginTable("UCS", UcsTable, 0);
    text.group(0, "ENDTAB");

    beginTable("APPID", AppIdTable, contents.hasOwnData ? 2 : 1);
    beginRecord("APPID", AcadAppId, AppIdTable, "AcDbRegAppTableRecord", "ACAD");
    text.group(70, 0);
    if (contents.hasOwnData) {
        beginRecord("APPID", OwnAppId, AppIdTable, "AcDbRegAppTableRecord", Application);
        text.group(70, 0);
    }
    text.group(0, "ENDTAB");

    beginTable("DIMSTYLE", DimStyleTable, 1);
    if (hasObjects())
        text.group(100, "AcDbDimStyleTable");
    beginRecord("DIMSTYLE", StandardDimStyle, DimStyleTable, "AcDbDimStyleTableRecord",
                hasObjects() ? "Standard" : "STANDARD");
    text.group(70, 0);
    text.group(0, "ENDTAB");

    if (hasObjects()) {
        beginTable("BLOCK_RECORD", BlockRecordTable, 2);
        beginRecord("BLOCK_RECORD", ModelRecord, BlockRecordTable, "AcDbBlockTableRecord",
                    "*Model_Space");
        text.handle(340, ModelLayout);
        beginRecord("BLOCK_RECORD", PaperRecord, BlockRecordTable, "AcDbBlockTableRecord",
                    "*Paper_Space");
        text.handle(340, PaperLayout);
        text.group(0, "ENDTAB");
    }
    text.group(0, "ENDSEC");
}

void DxfDocument::block(const char* name, int record, int begin, int end, bool paper) {
    text.group(0, "BLOCK");
    text.handle(5, begin);
    text.handle(330, record);
    text.group(100, "AcDbEntity");
    if (paper)
        text.group(67, 1);
    text.groups({{8, "0"}, {100, "AcDbBlockBegin"}, {2, name}});
    text.group(70, 0);
    text.point3(10, {});
    text.groups({{3, name}, {1, ""}, {0, "ENDBLK"}});
    text.handle(5, end);
    text.handle(330, record);
    text.group(100, "AcDbEntity");
    if (paper)
        text.group(67, 1);
    text.groups({{8, "0"}, {100, "AcDbBlockEnd"}});
}

void DxfDocument::blocks() {
    block("*Model_Space", ModelRecord, ModelBlock, ModelBlockEnd, false);
    block("*Paper_Space", PaperRecord, PaperBlock, PaperBlockEnd, true);
}

void DxfDocument::layout(const char* name, int handle, int blockRecord, int order) {
    text.group(0, "LAYOUT");
    text.handle(5, handle);
    text.handle(330, LayoutDictionary);
    text.groups({{100, "AcDbPlotSettings"}, {1, ""}, {2, "none_device"}, {4, "A4"}, {6, ""}});
    for (const int code : {40, 41, 42, 43})
        text.group(code, 7.5);
    text.group(44, 210.0);
    text.group(45, 297.0);
    for (const int code : {46, 47, 48, 49, 140, 141})
        text.group(code, 0.0);
    text.group(142, 1.0);
    text.group(143, 1.0);
    text.group(70, order == 0 ? 1712 : 688);
    text.group(72, 1);
    text.group(73, 0);
    text.group(74, 5);
    text.group(7, "");
    text.group(75, 16);
    text.group(147, 1.0);
    text.group(148, 0.0);
    text.group(149, 0.0);
    text.groups({{100, "AcDbLayout"}, {1, name}});
    text.group(70, 1);
    text.group(71, order);
    text.point(10, extents.topLeft());
    text.point(11, extents.bottomRight());
    text.point3(12, {});
    text.point3(14, extents.topLeft());
    text.point3(15, extents.bottomRight());
    text.group(146, 0.0);
    text.point3(13, {});
    text.point3(16, {1.0, 0.0});
    text.point3(17, {0.0, 1.0});
    text.group(76, 0);
    text.handle(330, blockRecord);
}

void DxfDocument::objects() {
    const auto dictionary = [this](const char* type, int handle, int owner,
                                   std::initializer_list<std::pair<const char*, int>> entries) {
        text.group(0, type);
        text.handle(5, handle);
        text.handle(330, owner);
        text.group(100, "AcDbDictionary");
        text.group(281, 1);
        for (const auto& [name, entry] : entries) {
            text.group(3, name);
            text.handle(350, entry);
        }
    };
    text.groups({{0, "SECTION"}, {2, "OBJECTS"}});
    dictionary("DICTIONARY", RootDictionary, 0,
               {{"ACAD_GROUP", GroupDictionary},
                {"ACAD_LAYOUT", LayoutDictionary},
                {"ACAD_MLINESTYLE", MLineStyleDictionary},
                {"ACAD_PLOTSETTINGS", PlotSettingsDictionary},
                {"ACAD_PLOTSTYLENAME", PlotStyleDictionary}});
    dictionary("DICTIONARY", GroupDictionary, RootDictionary, {});
    dictionary("DICTIONARY", LayoutDictionary, RootDictionary,
               {{"Model", ModelLayout}, {"Layout1", PaperLayout}});
    dictionary("DICTIONARY", MLineStyleDictionary, RootDictionary,
               {{"Standard", StandardMLineStyle}});
    dictionary("DICTIONARY", PlotSettingsDictionary, RootDictionary, {});
    dictionary("ACDBDICTIONARYWDFLT", PlotStyleDictionary, RootDictionary,
               {{"Normal", PlotStyleNormal}});
    text.group(100, "AcDbDictionaryWithDefault");
    text.handle(340, PlotStyleNormal);
    text.group(0, "ACDBPLACEHOLDER");
    text.handle(5, PlotStyleNormal);
    text.handle(330, PlotStyleDictionary);

    text.group(0, "MLINESTYLE");
    text.handle(5, StandardMLineStyle);
    text.handle(330, MLineStyleDictionary);
    text.groups({{100, "AcDbMlineStyle"}, {2, "Standard"}});
    text.group(70, 0);
    text.group(3, "");
    text.group(62, 256);
    text.group(51, 90.0);
    text.group(52, 90.0);
    text.group(71, 2);
    for (const double offset : {0.5, -0.5}) {
        text.group(49, offset);
        text.group(62, 256);
        text.group(6, "BYLAYER");
    }
    layout("Model", ModelLayout, ModelRecord, 0);
    layout("Layout1", PaperLayout, PaperRecord, 1);
    text.group(0, "ENDSEC");
}
