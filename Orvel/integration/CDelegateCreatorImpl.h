#pragma once

#include "host/delegates/IDelegateCreator.h"

/// Makes a `Delegate` for whoever asks, whatever it is to show.
template<typename Delegate>
class CDelegateCreatorImpl : public IDelegateCreator
{
public:
    QAbstractItemDelegate* createDelegate(int /*delegateId*/, CProjectModel* /*model*/, int /*propertyId*/,
                                          QObject* parent) const override
    {
        return new Delegate(parent);
    }
};
