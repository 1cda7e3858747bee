#include "Orvel/store/COVMessage.h"

#include <algorithm>

COVMessage::COVMessage(int protocolType_, int messageType_, LONGID itemId, int itemType, const QString& text_,
                       int stage_)
    : protocolType(protocolType_)
    , messageType(static_cast<MessageType>(messageType_))
    , stage(stage_)
    , itemIds{itemId}
    , itemTypes{itemType}
    , text(text_)
{}

COVMessage::COVMessage(int protocolType_, int messageType_, const std::vector<LONGID>& itemIds_,
                       const std::vector<int>& itemTypes_, const QString& text_, int stage_)
    : protocolType(protocolType_)
    , messageType(static_cast<MessageType>(messageType_))
    , stage(stage_)
    , itemIds(itemIds_)
    , itemTypes(itemTypes_)
    , text(text_)
{}

int COVMessage::GetItemTypeByID(LONGID id) const
{
    if (itemIds.size() != itemTypes.size())
        return kGeneralItemType;
    const auto found = std::find(itemIds.begin(), itemIds.end(), id);
    if (found == itemIds.end())
        return kGeneralItemType;
    return itemTypes[static_cast<std::size_t>(found - itemIds.begin())];
}

bool COVMessage::IsItemMessage(LONGID id) const
{
    return std::find(itemIds.begin(), itemIds.end(), id) != itemIds.end();
}

void COVMessage::GetItemsID(std::set<LONGID>& ids) const
{
    ids.insert(itemIds.begin(), itemIds.end());
}
