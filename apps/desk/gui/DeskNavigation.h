#pragma once

#include "host/window/IUriNavigationHandler.h"

namespace orvel::desk {

class DeskWindow;

/// Follows the links to items, protocols and reports.
class DeskNavigation : public IUriNavigationHandler
{
public:
    /// The window owns the handler.
    explicit DeskNavigation(DeskWindow& deskWindow) : window(deskWindow) {}

    /// Whether the URI asks for a protocol that no run of the desk writes.
    static bool isUnknownProtocol(const QUrl& url);

    bool navigate(const QUrl& url) override;
    bool isAllowedDuringRun(const QUrl& url) const override;

private:
    DeskWindow& window;
};

} // namespace orvel::desk
