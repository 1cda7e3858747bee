#pragma once

#include "host/model/LongId.h"
#include "levelling/Network.h"

#include <QStringList>

#include <vector>

namespace orvel::desk {

/// A copy of the project's network for a run to work on, with the items' ids beside it.
struct NetworkSnapshot
{
    levelling::Network network;
    std::vector<LONGID> pointIds;   ///< by index of the point
    std::vector<LONGID> sectionIds; ///< by index of the section
    QStringList sectionNames;       ///< by index of the section
};

} // namespace orvel::desk
