#include "hostedmodule.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>

#include <stdexcept>

#include <ovplugininterface.h>

namespace {

/// Where the build and the installation put the module, seen from the program's folder.
QString modulePath() {
    const QDir programs(QCoreApplication::applicationDirPath());
    for (const char* place : {OVTRACE_MODULE_BUILT, OVTRACE_MODULE_INSTALLED}) {
        QString path = programs.absoluteFilePath(QString::fromLatin1(place));
        if (QFileInfo::exists(path))
            return path;
    }
    throw std::runtime_error("the tracing module is missing; it belongs at " +
                             programs.absoluteFilePath(OVTRACE_MODULE_INSTALLED).toStdString());
}

} // namespace

HostedModule::HostedModule(const QString& fileName)
    : loader(fileName.isEmpty() ? modulePath() : QFileInfo(fileName).absoluteFilePath()) {
    plugin = qobject_cast<OvPluginInterface*>(loader.instance());
    if (plugin == nullptr)
        throw std::runtime_error("cannot load the tracing module: " +
                                 loader.errorString().toStdString());
    if (!plugin->init())
        throw std::runtime_error("the tracing module is not ready");
    plugin->postInit(OvPluginInterface::AllPluginsLoaded);
}

HostedModule::~HostedModule() {
    if (plugin != nullptr)
        plugin->uninit(false);
}

QByteArray HostedModule::facts() const {
    const OvPluginInfo info = plugin->getPluginInfo();
    QJsonObject record;
    for (const QString& key : info.getKeys())
        record[key] = QJsonValue::fromVariant(info.get(key));
    return QJsonDocument(QJsonObject{{"file", loader.fileName()},
                                     {"metadata", loader.metaData()},
                                     {"information", record}})
        .toJson();
}
