#pragma once

class OrvelGUIExtension;
class QUrl;

namespace orvel {

/// Follows "generate-protocol" links: shows the page of the protocol type that the link names.
struct ProtocolLinkHandler
{
    OrvelGUIExtension* viewer;

    /// True when the link was one of these and its "id" is a number. Scheme and project are not looked at:
    /// each project window has a handler of its own.
    bool operator()(const QUrl& url) const;
};

} // namespace orvel
