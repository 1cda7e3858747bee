#pragma once

#include "host/host_export.h"

#include <QVariant>

namespace Property {

/// Something that keeps values under property ids.
struct HOST_EXPORT IPropertyHolder
{
    virtual ~IPropertyHolder() = default;

    /// The value kept under the id, or an invalid one.
    virtual QVariant getProperty(int propertyId) const = 0;
    /// Keeps the value; an invalid one removes what is kept. False if the holder doesn't take it.
    virtual bool setProperty(int propertyId, const QVariant& value) = 0;
};

} // namespace Property
