#pragma once

#include <QList>
#include <QPair>
#include <QString>
#include <QVariant>

/// What a plug-in says about itself: values by key, in the order in which they were set.
class OvPluginInfo {
public:
    /// Sets the value of `key`; a key that is there already keeps its place.
    void set(const QString& key, const QVariant& value) {
        for (auto& entry : entries) {
            if (entry.first == key) {
                entry.second = value;
                return;
            }
        }
        entries.append({key, value});
    }
    /// The value of `key`, or an invalid QVariant.
    QVariant get(const QString& key) const {
        for (const auto& entry : entries) {
            if (entry.first == key)
                return entry.second;
        }
        return {};
    }
    QList<QString> getKeys() const {
        QList<QString> keys;
        for (const auto& entry : entries)
            keys.append(entry.first);
        return keys;
    }

private:
    QList<QPair<QString, QVariant>> entries;
};
