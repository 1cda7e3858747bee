#include "Orvel/store/COVMessage.h"

#include <algorithm>

COVMessage::COVMessage(int givenProtocolType, int givenMessageType, LONGID itemId, int itemType,
                       const QString& givenText, int givenStage)
    : protocolType(givenProtocolType)
    , messageType(static_cast<MessageType>(givenMessageType))
    , stage(givenStage)
    , itemIds{itemId}
    , itemTypes{itemType}
    , text(givenText)
{}

COVMessage::COVMessage(int givenProtocolType, int givenMessageType, const std::vector<LONGID>& givenItemIds,
                       const std::vector<int>& givenItemTypes, const QString& givenText, int givenStage)
    : protocolType(givenProtocolType)
    , messageType(static_cast<MessageType>(givenMessageType))
    , stage(givenStage)
    , itemIds(givenItemIds)
    , itemTypes(givenItemTypes)
    , text(givenText)
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
