#pragma once

#include "Orvel/orvel_export.h"
#include "host/model/ItemTypes.h"
#include "host/model/LongId.h"

#include <QString>

#include <set>
#include <vector>

/// One line of a protocol: its text, its kind, the run it belongs to and the model items it mentions.
///
/// A plain value. `itemIds` and `itemTypes` are parallel: entry i of one belongs to entry i of the other.
struct ORVEL_EXPORT COVMessage
{
    /// The kinds of line; their numbers stand in data files.
    enum MessageType : int {
        Title = 0,      ///< title line that closes a run
        Service = 1,    ///< date and project lines; what a run writes without a kind
        Statistics = 2, ///< figures about the run
        Error = 3,
        Warning = 4,
        Message = 5,
        Stage = 6 ///< heading of a stage; has no style class of its own
    };

    /// A message that refers to one item, or to none with id 0 and `kGeneralItemType`.
    COVMessage(int protocolType, int messageType, LONGID itemId, int itemType, const QString& text,
               int stage);

    /// A message that refers to several items; `itemTypes` runs parallel to `itemIds`.
    COVMessage(int protocolType, int messageType, const std::vector<LONGID>& itemIds,
               const std::vector<int>& itemTypes, const QString& text, int stage);

    /// Type recorded for the first occurrence of `id`; `kGeneralItemType` when the id is not there or the
    /// two lists do not match.
    int GetItemTypeByID(LONGID id) const;

    bool IsItemMessage(LONGID id) const; ///< Whether the message refers to the item.

    /// Adds every id of this message to `ids`, the id 0 of a message without items included.
    void GetItemsID(std::set<LONGID>& ids) const;

    int protocolType;            ///< the run's, of `enums::OrvelType`
    MessageType messageType;     ///< kind of the line
    int stage;                   ///< stage open when the line arose; 0 when none was
    std::vector<LONGID> itemIds; ///< in the order of the links in the text
    std::vector<int> itemTypes;  ///< as they were when the line arose
    QString text;                ///< HTML-ready
};
