#pragma once

#include "host/host_export.h"

class CProjectModel;
class QAbstractItemDelegate;
class QObject;

/// Makes the item delegates of one delegate id.
struct HOST_EXPORT IDelegateCreator
{
    virtual ~IDelegateCreator() = default;

    /// Makes a delegate, owned by @p parent, for values of the property @p propertyId of @p model.
    virtual QAbstractItemDelegate* createDelegate(int delegateId, CProjectModel* model, int propertyId,
                                                  QObject* parent) const = 0;
};
