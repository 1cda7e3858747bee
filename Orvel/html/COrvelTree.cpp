#include "Orvel/html/TreeMarkup.h"
#include "Orvel/store/COrvel.h"
#include "Orvel/store/LinkScanner.h"

#include <QCoreApplication>

namespace {

namespace tree = orvel::tree;
using orvel::HtmlOutput;

/// Whether the messages of an item type get a node for each item.
bool hasItemNodes(int itemType)
{
    return itemType == kPointItemType || itemType == kSectionItemType;
}

void appendKind(const COrvel::MessageList& list, COVMessage::MessageType kind, COrvel::MessageList& result)
{
    for (COVMessage* message : list) {
        if (message->messageType == kind)
            result.push_back(message);
    }
}

/// Opens a block with its top node and the caption of that, ready for the node's children.
void openBlock(QLatin1String blockClass, bool asRoot, const QString& caption, std::size_t count,
               HtmlOutput& html)
{
    html << QLatin1String("<div class='") << blockClass << QLatin1String("'>\n");
    tree::openContainer(html);
    tree::openNode(
        asRoot ? QLatin1String("IsRoot IsLast ExpandOpen") : QLatin1String("Node IsLast ExpandOpen"), html);
    tree::appendCaption(caption, count, html);
}

void closeBlock(HtmlOutput& html)
{
    tree::closeNode(html);
    tree::closeContainer(html);
    html << QLatin1String("</div>\n");
}

} // namespace

bool COrvel::GetHtmlList(const MessageList& list, QString& html)
{
    HtmlOutput output(html);
    return GetHtmlList(list, output);
}

bool COrvel::GetHtmlList(const MessageList& list, HtmlOutput& html)
{
    if (list.empty())
        return false;
    tree::openContainer(html);
    for (const COVMessage* message : list)
        tree::appendLeaf(GetMessageStyleClass(*message), message->text, html);
    tree::closeContainer(html);
    return true;
}

bool COrvel::GetHtmlGroupedData(const MessageList& list, QString& html, bool asRoot)
{
    HtmlOutput output(html);
    return GetHtmlGroupedData(list, output, asRoot);
}

bool COrvel::GetHtmlGroupedData(const MessageList& list, HtmlOutput& html, bool asRoot)
{
    MessageList problems;
    appendKind(list, COVMessage::Error, problems);
    appendKind(list, COVMessage::Warning, problems);
    if (!problems.empty()) {
        MessageGroups<int> byItemType;
        GetMessagesByItemType(problems, byItemType);
        openBlock(QLatin1String("errorblock"), asRoot,
                  QCoreApplication::translate("Orvel", "Ошибки и предупреждения"), problems.size(), html);
        tree::openContainer(html);
        for (const auto& [itemType, group] : byItemType)
            AppendItemTypeNode(itemType, group, html);
        tree::closeContainer(html);
        closeBlock(html);
    }

    MessageList plain;
    appendKind(list, COVMessage::Message, plain);
    if (!plain.empty()) {
        openBlock(QLatin1String("messageblock"), asRoot, QCoreApplication::translate("Orvel", "Сообщения"),
                  plain.size(), html);
        GetHtmlList(plain, html);
        closeBlock(html);
    }
    return true;
}

void COrvel::AppendItemTypeNode(int itemType, const MessageList& list, HtmlOutput& html)
{
    // A type without a heading is left out by design, messages and all.
    const QString groupName = GetItemGroupName(itemType);
    if (groupName.isEmpty())
        return;
    tree::openNode(QLatin1String("Node ExpandOpen"), html);
    tree::appendCaption(groupName, list.size(), html);
    if (hasItemNodes(itemType))
        AppendItemNodes(itemType, list, html);
    else
        GetHtmlList(list, html);
    tree::closeNode(html);
}

void COrvel::AppendItemNodes(int itemType, const MessageList& list, HtmlOutput& html)
{
    MessageGroups<LONGID> byItem;
    GetMessagesByItemId(list, byItem);

    std::multimap<QStringView, const MessageList*> byCaption;
    for (const auto& [itemId, group] : byItem) {
        const COVMessage& first = *group.front();
        if (first.GetItemTypeByID(itemId) == itemType)
            byCaption.emplace(orvel::links::getItemAnchor(first.text, itemId), &group);
    }

    tree::openContainer(html);
    for (const auto& [caption, group] : byCaption) {
        tree::openNode(QLatin1String("Node ExpandClosed"), html);
        tree::appendCaption(caption, group->size(), html);
        GetHtmlList(*group, html);
        tree::closeNode(html);
    }
    tree::closeContainer(html);
}
