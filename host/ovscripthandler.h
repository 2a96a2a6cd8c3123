#pragma once

/// The host's script engine, to which a plug-in may add extensions.
///
/// The stand-in has no script engine: the type exists for the plug-in interface alone.
class OvScriptHandler {
public:
    virtual ~OvScriptHandler() = default;
};
