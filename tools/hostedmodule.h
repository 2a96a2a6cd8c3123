#pragma once

#include <QByteArray>
#include <QPluginLoader>
#include <QString>

class OvPluginInterface;

/// The tracing module, loaded and initialised as the CAD host does it.
class HostedModule {
public:
    /// Loads `fileName`, or the module that lies with the program when it is empty. Throws
    /// std::runtime_error when it cannot.
    explicit HostedModule(const QString& fileName);
    ~HostedModule();
    HostedModule(const HostedModule&) = delete;
    HostedModule& operator=(const HostedModule&) = delete;

    /// The metadata and the information record of the module, as JSON.
    QByteArray facts() const;

private:
    QPluginLoader loader;
    OvPluginInterface* plugin = nullptr;
};
