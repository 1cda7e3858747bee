#pragma once

#include "host/host_export.h"
#include "host/model/LongId.h"

#include <QString>

namespace tervo {

/// A data object that an item manager keeps.
struct HOST_EXPORT IItem
{
    virtual ~IItem() = default;

    virtual LONGID getId() const = 0;    ///< Unique in the project.
    virtual qint64 getType() const = 0;  ///< Item type of the enumeration registry.
    virtual QString getName() const = 0; ///< As the user reads it.
};

/// Finds data objects that are no elements of a project model.
struct HOST_EXPORT IItemManager
{
    virtual ~IItemManager() = default;

    /// The object with that id, or null.
    virtual IItem* findItem(LONGID id) const = 0;
};

} // namespace tervo
