#pragma once

#include <QList>
#include <QMap>
#include <QString>
#include <QStringList>
#include <QVariant>

/// Settings for a kind of picture, by their keys.
struct Preset {
    const char* name = "";
    QMap<QString, QVariant> values;
    const char* meaning = "";
};

const QList<Preset>& presets();
QStringList presetNames();

/// The preset of that name; null when there is none.
const Preset* findPreset(const QString& name);
