#include "Orvel/store/COrvel.h"

#include <QVarLengthArray>

#include <algorithm>

namespace {

/// Files `message` once under each distinct one of its `keys`.
template<typename Key>
void addToGroups(COVMessage* message, const std::vector<Key>& keys, COrvel::MessageGroups<Key>& groups)
{
    QVarLengthArray<Key, 8> sorted(keys.begin(), keys.end());
    std::sort(sorted.begin(), sorted.end());
    auto* const end = std::unique(sorted.begin(), sorted.end());
    for (auto key = sorted.begin(); key != end; ++key)
        groups[*key].push_back(message);
}

} // namespace

void COrvel::GetProtocolMessages(int protocolType, MessageList& list, std::set<int> kinds)
{
    const auto found = messages.find(protocolType);
    if (found == messages.end())
        return;
    for (COVMessage& message : found->second) {
        if (kinds.empty() || kinds.count(message.messageType) != 0)
            list.push_back(&message);
    }
}

void COrvel::FilterMessages(MessageList& list, std::set<int> protocolTypes, std::set<int> kinds) const
{
    const auto isRejected = [&](const COVMessage* message) {
        return protocolTypes.count(message->protocolType) != 0 || kinds.count(message->messageType) != 0;
    };
    list.erase(std::remove_if(list.begin(), list.end(), isRejected), list.end());
}

void COrvel::GetMessageList(const MessageList& list, int /*unused*/, COVMessage::MessageType kind,
                            int itemType, MessageList& result)
{
    for (COVMessage* message : list) {
        if (message->messageType != kind)
            continue;
        const std::vector<int>& types = message->itemTypes;
        if (itemType == kGeneralItemType || std::find(types.begin(), types.end(), itemType) != types.end())
            result.push_back(message);
    }
}

void COrvel::GetMessagesByItemId(const MessageList& list, MessageGroups<LONGID>& groups) const
{
    for (COVMessage* message : list)
        addToGroups(message, message->itemIds, groups);
}

void COrvel::GetMessagesByItemType(const MessageList& list, MessageGroups<int>& groups) const
{
    for (COVMessage* message : list)
        addToGroups(message, message->itemTypes, groups);
}

void COrvel::GetMessagesByMessageType(const MessageList& list, MessageGroups<int>& groups) const
{
    for (COVMessage* message : list)
        groups[message->messageType].push_back(message);
}

void COrvel::GetMessagesByStage(const MessageList& list, MessageGroups<int>& groups) const
{
    for (COVMessage* message : list)
        groups[message->stage].push_back(message);
}
