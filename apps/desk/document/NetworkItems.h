#pragma once

#include "apps/desk/document/LevellingPoint.h"
#include "apps/desk/document/LevellingSection.h"
#include "apps/desk/document/NetworkSnapshot.h"
#include "host/model/CItemManager.h"
#include "host/model/CItemTree.h"

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace orvel::desk {

/// A levelling network as items of a project, complete and in no document yet. May be made in any thread, so
/// that a large network enters a document at once.
struct NetworkItems
{
    /// A network without points.
    NetworkItems();

    /// Makes the items of a network. Those that `known` has, by their names, get the ids that they have
    /// there, the others ids from `nextId` on.
    static NetworkItems make(levelling::Network network, const NetworkSnapshot& known, LONGID nextId);
    /// The same, or nothing when `isStopped`, asked every few thousand items, says so.
    static std::optional<NetworkItems> make(levelling::Network network, const NetworkSnapshot& known,
                                            LONGID nextId, const std::function<bool()>& isStopped,
                                            std::shared_ptr<const tacheometry::FieldBook> fieldBook = {});
    /// Takes items that have ids. The network beside them holds their points and sections, and what `network`
    /// has besides.
    static NetworkItems make(levelling::Network network, std::vector<std::unique_ptr<LevellingPoint>> points,
                             std::vector<std::unique_ptr<LevellingSection>> sections, LONGID nextId,
                             std::shared_ptr<const tacheometry::FieldBook> fieldBook = {});

    std::unique_ptr<CItemTree> points;
    std::unique_ptr<tervo::CItemManager> sections;
    std::shared_ptr<const NetworkSnapshot> snapshot; ///< of points and sections
    LONGID nextId = 0;                               ///< the next new item's id
};

} // namespace orvel::desk
