#pragma once

#include <QObject>
#include <QString>

#include <ovplugininterface.h>

/// What the plug-ins of the product share: an identifier and a place for script files.
class OvPluginBase : public QObject, public OvPluginInterface {
    Q_OBJECT
    Q_INTERFACES(OvPluginInterface)

public:
    /// `scriptPath` names the folder of the plug-in's own script files, empty without any.
    OvPluginBase(const QString& id, const QString& scriptPath);

    void uninit(bool remove) override;
    void postInit(InitStatus status) override;
    void initTranslations() override;
    OvPluginInfo getPluginInfo() override;

private:
    QString id;
    QString scriptPath;
};
