#pragma once

#include <QMap>
#include <QString>
#include <QVariant>
#include <QtPlugin>

class OvScriptHandler;

class OvPluginInfo {
public:
    void set(const QString& key, const QVariant& value) {
        values[key] = value;
    }

private:
    QMap<QString, QVariant> values;
};

class OvPluginInterface {
public:
    enum InitStatus { Started };
    virtual ~OvPluginInterface() = default;
    virtual bool init() = 0;
    virtual void uninit(bool remove) = 0;
    virtual void postInit(InitStatus status) = 0;
    virtual void initScriptExtensions(OvScriptHandler&) {
    }
    virtual void initTranslations() = 0;
    virtual OvPluginInfo getPluginInfo() = 0;
};

Q_DECLARE_INTERFACE(OvPluginInterface, "example.fake.HOST.OvPluginInterface/1.0")
