#include "ovpluginbase.h"

#include "pluginconfig.h"

// NOLINTNEXTLINE(modernize-pass-by-value): the signature is the host's.
OvPluginBase::OvPluginBase(const QString& id, const QString& scriptPath)
    : id(id), scriptPath(scriptPath) {
}

void OvPluginBase::uninit(bool /*remove*/) {
}

void OvPluginBase::postInit(InitStatus /*status*/) {
}

void OvPluginBase::initTranslations() {
}

OvPluginInfo OvPluginBase::getPluginInfo() {
    OvPluginInfo info;
    info.set(QStringLiteral("Version"), QStringLiteral(OVTRACE_VERSION));
    info.set(QStringLiteral("ID"), id);
    return info;
}
