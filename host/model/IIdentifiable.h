#pragma once

#include "host/host_export.h"
#include "host/model/LongId.h"

namespace qor {

/// Something that has an item id.
struct HOST_EXPORT IIdentifiable
{
    virtual ~IIdentifiable() = default;

    virtual LONGID getId() const = 0; ///< Unique in a project; 0 for none.
};

} // namespace qor
