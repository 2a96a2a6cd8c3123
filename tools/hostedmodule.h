#pragma once

#include <QPluginLoader>
#include <QString>

class OvPluginInterface;

/// The tracing module, loaded and initialised as the CAD host does it.
class HostedModule {
public:
    /// Loads the module that lies with the program. Throws std::runtime_error when it cannot.
    HostedModule();
    ~HostedModule();
    HostedModule(const HostedModule&) = delete;
    HostedModule& operator=(const HostedModule&) = delete;

private:
    QPluginLoader loader;
    OvPluginInterface* plugin = nullptr;
};
