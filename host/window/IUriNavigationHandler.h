#pragma once

#include "host/host_export.h"

class QUrl;

/// Leads the user to what a URI in the application's scheme names.
struct HOST_EXPORT IUriNavigationHandler
{
    virtual ~IUriNavigationHandler() = default;

    /// False if the URI is none of the handler's.
    virtual bool navigate(const QUrl& url) = 0;
    /// Whether the handler may follow @p url while a run works on the project. What makes or changes
    /// something of the project may not.
    virtual bool isAllowedDuringRun(const QUrl& /*url*/) const { return false; }
};
