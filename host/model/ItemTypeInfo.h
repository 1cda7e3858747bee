#pragma once

#include <QFlags>

/// What a project model has to know about the items of one type.
struct ItemTypeInfo
{
    /// What may be done with an item.
    enum Flag {
        NotDeletable = 1, ///< CProjectModel::removeItem() refuses the item.
    };
    Q_DECLARE_FLAGS(Flags, Flag)
};

Q_DECLARE_OPERATORS_FOR_FLAGS(ItemTypeInfo::Flags)
