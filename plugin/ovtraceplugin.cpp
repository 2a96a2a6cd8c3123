#include "ovtraceplugin.h"

#include <QDebug>

OvTracePlugin::OvTracePlugin() : OvPluginBase(QStringLiteral("TRACE"), QString()) {
}

bool OvTracePlugin::init() {
    qDebug("OvTracePlugin::init");
    return true;
}

OvPluginInfo OvTracePlugin::getPluginInfo() {
    OvPluginInfo info = OvPluginBase::getPluginInfo();
    info.set(QStringLiteral("Name"), QStringLiteral(OVTRACE_EDITION_NAME));
    info.set(QStringLiteral("Description"), QStringLiteral("Bitmap vectorization."));
    info.set(QStringLiteral("URL"), QStringLiteral(OVTRACE_EDITION_URL));
    return info;
}
