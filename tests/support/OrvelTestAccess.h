#pragma once

#include "Orvel/store/COrvel.h"

#include <map>
#include <set>
#include <vector>

/// The door that `COrvel` leaves to its tests: its private operations and fields under their own names.
struct OrvelTestAccess
{
    using MessageList = COrvel::MessageList;
    template<typename Key>
    using MessageGroups = COrvel::MessageGroups<Key>;
    using MessageStore = std::map<int, std::vector<COVMessage>>;

    // Intake
    static void AddMessage(COrvel& protocol, const COVMessage& message) { protocol.AddMessage(message); }
    static void AddTitleInfo(COrvel& protocol, int type) { protocol.AddTitleInfo(type); }
    static int GetItemTypeByID(const COrvel& protocol, LONGID id) { return protocol.GetItemTypeByID(id); }

    // Data file
    static bool ReadXML(COrvel& protocol) { return protocol.ReadXML(); }
    static bool WriteXML(COrvel& protocol) { return protocol.WriteXML(); }
    static QString GetProtocolFilePath(COrvel& protocol, int type)
    {
        return protocol.GetProtocolFilePath(type);
    }

    // Selection and grouping
    static void GetProtocolMessages(COrvel& protocol, int type, MessageList& list, const std::set<int>& kinds)
    {
        protocol.GetProtocolMessages(type, list, kinds);
    }
    static void FilterMessages(const COrvel& protocol, MessageList& list, const std::set<int>& types,
                               const std::set<int>& kinds)
    {
        protocol.FilterMessages(list, types, kinds);
    }
    static void GetMessageList(COrvel& protocol, const MessageList& list, int unused,
                               COVMessage::MessageType kind, int itemType, MessageList& result)
    {
        protocol.GetMessageList(list, unused, kind, itemType, result);
    }
    static void GetMessagesByItemId(const COrvel& protocol, const MessageList& list,
                                    MessageGroups<LONGID>& groups)
    {
        protocol.GetMessagesByItemId(list, groups);
    }
    static void GetMessagesByItemType(const COrvel& protocol, const MessageList& list,
                                      MessageGroups<int>& groups)
    {
        protocol.GetMessagesByItemType(list, groups);
    }
    static void GetMessagesByMessageType(const COrvel& protocol, const MessageList& list,
                                         MessageGroups<int>& groups)
    {
        protocol.GetMessagesByMessageType(list, groups);
    }
    static void GetMessagesByStage(const COrvel& protocol, const MessageList& list,
                                   MessageGroups<int>& groups)
    {
        protocol.GetMessagesByStage(list, groups);
    }

    // Protocol types
    static QString GetProtocolTitle(COrvel& protocol, int type) { return protocol.GetProtocolTitle(type); }

    // Pages and tree
    static void ParseHtmlTemplate(const COrvel& protocol, QString& head, QString& tail)
    {
        protocol.ParseHtmlTemplate(head, tail);
    }
    static bool GetHtmlProtocolData(COrvel& protocol, int type, QString& html)
    {
        return protocol.GetHtmlProtocolData(type, html);
    }
    static bool GetHtmlItemData(COrvel& protocol, LONGID id, QString& html)
    {
        return protocol.GetHtmlItemData(id, html);
    }
    static bool GetHtmlList(COrvel& protocol, const MessageList& list, QString& html)
    {
        return protocol.GetHtmlList(list, html);
    }
    static bool GetHtmlGroupedData(COrvel& protocol, const MessageList& list, QString& html, bool asRoot)
    {
        return protocol.GetHtmlGroupedData(list, html, asRoot);
    }

    // Fields
    static std::map<int, std::vector<int>>& reportTypes(COrvel& protocol) { return protocol.reportTypes; }
    static std::map<int, QString>& itemGroupNames(COrvel& protocol) { return protocol.itemGroupNames; }
    static QString& dataFilePath(COrvel& protocol) { return protocol.dataFilePath; }
    static CProjectModel*& model(COrvel& protocol) { return protocol.model; }
    static MessageStore& messages(COrvel& protocol) { return protocol.messages; }
    static std::map<int, QString>& protocolFiles(COrvel& protocol) { return protocol.protocolFiles; }
    static MessageStore& spareMessages(COrvel& protocol) { return protocol.spareMessages; }
    static std::set<LONGID>& idList(COrvel& protocol) { return protocol.idList; }
    static QString& templateFileName(COrvel& protocol) { return protocol.templateFileName; }
    static QString& uriScheme(COrvel& protocol) { return protocol.uriScheme; }
    static int& currentStage(COrvel& protocol) { return protocol.currentStage; }
    static int& nextStage(COrvel& protocol) { return protocol.nextStage; }
};
