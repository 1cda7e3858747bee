#pragma once

#include "host/host_export.h"

#include <QtPlugin>

class Application;

/// A plug-in's part in the application.
struct HOST_EXPORT IAppExtension
{
    virtual ~IAppExtension() = default;

    /// Called once after start. False if the plug-in could not extend the application.
    virtual bool extendApplication(Application* app) = 0;
    /// Called before the application ends. The default has nothing to undo.
    virtual void unextendApplication(Application* app);
};

Q_DECLARE_INTERFACE(IAppExtension, "org.orvel.IAppExtension/1.0")
