#pragma once

#include "host/host_export.h"
#include "host/model/LongId.h"

#include <memory>
#include <string>

namespace qor {

/// The links to a project's items as they were at one moment: a value that never changes, so that any thread
/// may make links with it, and that knows whether it is still right.
struct HOST_EXPORT IItemLinks
{
    virtual ~IItemLinks() = default;

    /// Whether nothing that a link shows has changed since that moment.
    virtual bool isCurrent() const = 0;
    /// The mark-up of the link to the item @p id; @p text is HTML.
    virtual std::wstring makeLink(LONGID id, const std::wstring& text) const = 0;
};

using ItemLinksPtr = std::shared_ptr<const IItemLinks>;

} // namespace qor
