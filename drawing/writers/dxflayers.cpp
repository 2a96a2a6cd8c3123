#include "dxflayers.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace {

QByteArray hexOf(const QColor& color) {
    return color.name(QColor::HexRgb).mid(1).toUpper().toLatin1();
}

const char* nameOf(StrokeKind kind) {
    switch (kind) {
    case StrokeKind::Dashed:
        return "DASHED";
    case StrokeKind::Hatch:
        return "HATCHING";
    default:
        return "LINES";
    }
}

} // namespace

DxfLayers::DxfLayers(const Drawing& drawing) : drawing(drawing) {
    const auto add = [&](const QByteArray& name, int color) {
        const bool isKnown = std::any_of(layers.begin(), layers.end(),
                                         [&](const DxfLayer& layer) { return layer.name == name; });
        if (!isKnown)
            layers.append({name, drawing.palette[color]});
    };
    if (drawing.method == Method::Outlines) {
        for (qsizetype k = 0; k < drawing.palette.size(); ++k)
            layers.append({"COLOR_" + QByteArray::number(k) + '_' + hexOf(drawing.palette[k]),
                           drawing.palette[k]});
        return;
    }
    QList<bool> isUsed(drawing.palette.size(), false);
    for (const Shape& shape : drawing.shapes) {
        if (shape.kind != ShapeKind::Region || !isUsed[shape.color])
            add(ofShape(shape), shape.color);
        isUsed[shape.color] = true;
    }
    for (const Stroke& stroke : drawing.strokes)
        add(ofStroke(stroke), stroke.color);
}

QByteArray DxfLayers::prefix(int color) const {
    if (drawing.palette.size() < 2)
        return {};
    return 'C' + QByteArray::number(color) + '_' + hexOf(drawing.palette[color]) + '_';
}

QByteArray DxfLayers::ofShape(const Shape& shape) const {
    switch (shape.kind) {
    case ShapeKind::Text:
        return prefix(shape.color) + "TEXT";
    case ShapeKind::Solid:
        return prefix(shape.color) + "SOLID";
    default:
        return "COLOR_" + QByteArray::number(shape.color) + '_' +
               hexOf(drawing.palette[shape.color]);
    }
}

QByteArray DxfLayers::ofStroke(const Stroke& stroke) const {
    return prefix(stroke.color) + nameOf(stroke.kind) + "_W" +
           QByteArray::number(stroke.widthClass + 1);
}

QByteArray DxfLayers::lineTypeOf(const Stroke& stroke) const {
    if (stroke.dashPattern < 0)
        return {};
    const bool isPlain = drawing.dashPatterns[stroke.dashPattern].size() <= 2;
    return QByteArray(isPlain ? "DASHED_" : "DASHDOT_") +
           QByteArray::number(stroke.dashPattern + 1);
}

QList<DxfLineType> DxfLayers::lineTypes(double scale) const {
    QList<DxfLineType> types;
    for (const Stroke& stroke : drawing.strokes) {
        const QByteArray name = lineTypeOf(stroke);
        const bool isKnown = std::any_of(
            types.begin(), types.end(), [&](const DxfLineType& type) { return type.name == name; });
        if (name.isEmpty() || isKnown)
            continue;
        DxfLineType type{name, {}};
        for (const double each : drawing.dashPatterns[stroke.dashPattern])
            type.lengths.append(each * scale);
        types.append(type);
    }
    return types;
}

int dxfLineWeight(double millimetres) {
    constexpr std::array Weights{0,  5,  9,  13, 15, 18,  20,  25,  30,  35,  40,  50,
                                 53, 60, 70, 80, 90, 100, 106, 120, 140, 158, 200, 211};
    const double wanted = millimetres * 100.0;
    return *std::min_element(Weights.begin(), Weights.end(), [&](int a, int b) {
        return std::abs(a - wanted) < std::abs(b - wanted);
    });
}
