#pragma once

#include "ovhostconfig.h"
#include "ovplugininfo.h"

#include <QtPlugin>

class OvScriptHandler;

/// What every plug-in offers the host. The order of the operations is part of the contract.
class OvPluginInterface {
public:
    /// Stages of the host's start-up that plug-ins are told of.
    enum InitStatus {
        AllPluginsLoaded, ///< every plug-in's init() has run
        GotMainWindow,    ///< the main window exists
        AllDone           ///< the host is ready for the user
    };

    virtual ~OvPluginInterface() = default;

    /// Called once before the plug-in is used; false means that it cannot be.
    virtual bool init() = 0;
    /// Ends the plug-in's use; `remove` is true when it is being removed for good.
    virtual void uninit(bool remove) = 0;
    virtual void postInit(InitStatus status) = 0;
    virtual void initScriptExtensions(OvScriptHandler& /*handler*/) {
    }
    virtual void initTranslations() = 0;
    virtual OvPluginInfo getPluginInfo() = 0;
};

Q_DECLARE_INTERFACE(OvPluginInterface, OVHOST_PLUGIN_INTERFACE_IID)
