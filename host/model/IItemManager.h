#pragma once

#include "host/host_export.h"
#include "host/model/LongId.h"

#include <QString>

namespace tervo {

/// A data object that an item manager keeps.
struct HOST_EXPORT IItem
{
    virtual ~IItem() = default;

    virtual LONGID getId() const = 0;
    virtual qint64 getType() const = 0;
    virtual QString getName() const = 0;
};

/// Finds data objects that are no elements of a project model.
struct HOST_EXPORT IItemManager
{
    virtual ~IItemManager() = default;

    /// The object with that id, or null.
    virtual IItem* findItem(LONGID id) const = 0;
};

} // namespace tervo
