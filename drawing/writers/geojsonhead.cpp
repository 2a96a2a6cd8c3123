#include "geojsonhead.h"

#include "../choices.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace {

QByteArray quoted(const QString& text) {
    // A list of one text, without its brackets.
    const QByteArray list = QJsonDocument(QJsonArray{text}).toJson(QJsonDocument::Compact);
    return list.mid(1, list.size() - 2);
}

/// EPSG:25832 as readers want it; other names as they are.
QString systemName(const QString& name) {
    const QString upper = name.toUpper();
    // The usual order of GeoJSON, longitude first, has a name of its own.
    if (upper == "EPSG:4326" || upper == "WGS84" || upper == "CRS84")
        return "urn:ogc:def:crs:OGC:1.3:CRS84";
    return upper.startsWith("EPSG:") ? "urn:ogc:def:crs:EPSG::" + upper.mid(5) : name;
}

} // namespace

QByteArray geoJsonHead(const Drawing& drawing) {
    QByteArray head = "{\"type\":\"FeatureCollection\",";
    if (!drawing.world)
        head += "\"crs\":null,\"units\":" + quoted(wordOf(unitChoices(), drawing.unit)) + ',';
    else if (drawing.crs.isEmpty())
        head += "\"crs\":null,";
    else
        head += "\"crs\":{\"type\":\"name\",\"properties\":{\"name\":" +
                quoted(systemName(drawing.crs)) + "}},";
    return head + "\"features\":[";
}
