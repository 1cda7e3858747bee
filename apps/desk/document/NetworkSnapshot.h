#pragma once

#include "host/model/LongId.h"
#include "levelling/Network.h"
#include "tacheometry/FieldBook.h"

#include <QStringList>

#include <memory>
#include <vector>

namespace orvel::desk {

/// A copy of the project's network for a run to work on, with the items' ids beside it, and of its field
/// book.
struct NetworkSnapshot
{
    levelling::Network network;
    std::vector<LONGID> pointIds;   ///< by index of the point
    std::vector<LONGID> sectionIds; ///< by index of the section
    QStringList sectionNames;       ///< by index of the section
    /// Tacheometry, whose points are points of the network.
    std::shared_ptr<const tacheometry::FieldBook> fieldBook =
        std::make_shared<const tacheometry::FieldBook>();
};

} // namespace orvel::desk
