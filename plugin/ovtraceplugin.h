#pragma once

#include "ovpluginbase.h"
#include "pluginconfig.h"

/// The plug-in as the host loads it. It registers nothing: the tracer class of the same module
/// does the work.
class OvTracePlugin : public OvPluginBase {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID OVTRACE_PLUGIN_IID)
    Q_INTERFACES(OvPluginInterface)

public:
    OvTracePlugin();

    bool init() override;
    OvPluginInfo getPluginInfo() override;
};
