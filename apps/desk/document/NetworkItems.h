#pragma once

#include "apps/desk/document/LevellingPoint.h"
#include "apps/desk/document/LevellingSection.h"
#include "apps/desk/document/NetworkSnapshot.h"
#include "host/model/CItemManager.h"
#include "host/model/CItemTree.h"

#include <QHash>
#include <QSet>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace orvel::desk {

/// What was done by hand to a network, by the items' ids.
struct HandStates
{
    QHash<LONGID, PointHandPointer> points;
    QHash<LONGID, SectionHandPointer> sections;
    std::vector<DeletedSection> deletedSections;
};

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
    /// @param hands  given if the network begins with the points and sections that `known` has: these keep
    ///               their ids and names then, and what was done to them by hand, if the network has them as
    ///               they were
    static std::optional<NetworkItems> make(levelling::Network network, const NetworkSnapshot& known,
                                            LONGID nextId, const std::function<bool()>& isStopped,
                                            std::shared_ptr<const tacheometry::FieldBook> fieldBook = {},
                                            const HandStates* hands = nullptr);
    /// Takes items that have ids. The network beside them holds their points and sections, and what `network`
    /// has besides.
    static NetworkItems make(levelling::Network network, std::vector<std::unique_ptr<LevellingPoint>> points,
                             std::vector<std::unique_ptr<LevellingSection>> sections, LONGID nextId,
                             std::shared_ptr<const tacheometry::FieldBook> fieldBook = {});

    /// The name of a section between points of these names that is none of the taken ones.
    static QString makeSectionName(const QString& from, const QString& to, const QSet<QString>& taken);

    std::unique_ptr<CItemTree> points; ///< null if the points of a document are to stay
    std::unique_ptr<tervo::CItemManager> sections;
    levelling::Network head; ///< what the network has besides points and sections
    std::shared_ptr<const tacheometry::FieldBook> fieldBook;
    std::shared_ptr<const NetworkSnapshot> snapshot; ///< of all; null if nobody has asked for one
    std::vector<DeletedSection> deletedSections;     ///< by hand
    LONGID nextId = 0;                               ///< the next new item's id
    quint64 state = 0;                               ///< their number, see statedigest
};

} // namespace orvel::desk
