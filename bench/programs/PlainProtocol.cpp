#include "bench/programs/PlainProtocol.h"

#include "Orvel/store/COrvel.h"
#include "Orvel/store/DataFileReader.h"
#include "host/app/Application.h"
#include "host/enums/EnumData.h"
#include "host/files/QtFile.h"
#include "host/files/StringUtils.h"
#include "host/model/CProject.h"
#include "host/model/CProjectModel.h"
#include "tests/reference/DomDataFile.h"
#include "tests/reference/RegExpLinks.h"

#include <QDir>
#include <QFile>
#include <QRegExp>
#include <QTextStream>
#include <QUrl>

#include <algorithm>

namespace orvel::bench {

namespace {

using List = std::vector<const COVMessage*>;

void readTemplate(QString& head, QString& tail)
{
    QFile file(QDir(Application::getTempFolder()).absoluteFilePath(QStringLiteral("protocol.html")));
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return;
    const QString content = QTextStream(&file).readAll();
    const int end = content.lastIndexOf(QStringLiteral("</div>"), -1, Qt::CaseInsensitive);
    head = content.left(end);
    tail = content.mid(end);
}

QString getGroupName(int itemType)
{
    if (itemType == kGeneralItemType)
        return QStringLiteral("Общие");
    return utils::toUpperFirst(QString::fromStdWString(getEnumData(itemType).getTextPlural()));
}

QString getCount(std::size_t count)
{
    return count == 0 ? QString() : QStringLiteral(" (%1)").arg(count);
}

QString makeContent(const QString& caption)
{
    return QStringLiteral("<div class=\"Content\">") + caption + QStringLiteral("</div>\n");
}

QString makeExpand()
{
    return QStringLiteral("<div class=\"Expand\"></div>\n");
}

QString makeListStart()
{
    return QStringLiteral("<ul class=\"Container\">\n");
}

QString getItemLink(const QString& text, LONGID id)
{
    const QString needle = QStringLiteral("id=") + QString::number(id);
    for (const QString& anchor : reference::findAnchors(text)) {
        if (anchor.contains(needle))
            return anchor;
    }
    return QString();
}

QStringList findAll(const QRegExp& expression, const QString& text)
{
    QStringList captures;
    for (int at = expression.indexIn(text); at >= 0;
         at = expression.indexIn(text, at + expression.matchedLength()))
        captures.append(expression.cap(1));
    return captures;
}

List selectKind(const List& list, COVMessage::MessageType kind)
{
    List result;
    for (const COVMessage* message : list) {
        if (message->messageType == kind)
            result.push_back(message);
    }
    return result;
}

void dropKind(List& list, COVMessage::MessageType kind)
{
    for (auto at = list.begin(); at != list.end();) {
        if ((*at)->messageType == kind)
            at = list.erase(at);
        else
            ++at;
    }
}

template<typename Key>
void addToGroups(const COVMessage* message, std::vector<Key> keys, std::map<Key, List>& groups)
{
    std::sort(keys.begin(), keys.end());
    keys.erase(std::unique(keys.begin(), keys.end()), keys.end());
    for (const Key key : keys)
        groups[key].push_back(message);
}

void appendList(const List& list, QString& html)
{
    if (list.empty())
        return;
    html += makeListStart();
    for (const COVMessage* message : list) {
        html += QStringLiteral("<li class=\"Node ExpandLeaf IsLast\">\n");
        html += makeExpand();
        html += QStringLiteral("<div class=\"Content ") + COrvel::GetMessageStyleClass(*message) +
                QStringLiteral("\">") + message->text + QStringLiteral("</div>\n");
        html += QStringLiteral("</li>\n");
    }
    html += QStringLiteral("</ul>\n");
}

} // namespace

PlainProtocol::PlainProtocol(CProjectModel& projectModel, const QString& dataFile)
    : model(projectModel)
    , dataFilePath(dataFile)
{}

void PlainProtocol::readDataFile()
{
    messages.clear();
    QtFile file(dataFilePath);
    file.open(QIODevice::ReadOnly);
    messages = *orvel::datafile::readXml(*file.device());
    file.close();
}

void PlainProtocol::writeDataFile()
{
    QtFile file(dataFilePath);
    file.open(QIODevice::WriteOnly);
    reference::writeDataFile(messages, *file.device());
    file.close();
    messages.clear();
}

void PlainProtocol::addMessage(const QString& text, int protocolType, COVMessage::MessageType kind)
{
    QString html = text;
    html.replace(QStringLiteral("\n"), QStringLiteral("<br>"));

    QRegExp expression(QStringLiteral("(<a.*</a>)"), Qt::CaseSensitive, QRegExp::RegExp);
    expression.setMinimal(true);
    const QStringList anchors = findAll(expression, html);
    expression.setPattern(QStringLiteral("id=(\\d+)"));
    expression.setMinimal(false);

    std::vector<LONGID> ids;
    std::vector<int> types;
    for (const QString& anchor : anchors) {
        for (const QString& digits : findAll(expression, anchor)) {
            ids.push_back(digits.toLongLong());
            const CModelElement* item = model.findItemAnywhere(ids.back());
            types.push_back(item ? item->getType() : kGeneralItemType);
        }
    }
    if (anchors.isEmpty()) {
        ids.push_back(0);
        types.push_back(kGeneralItemType);
    }
    const COVMessage message(protocolType, kind, ids, types, html, 0);
    messages[protocolType].push_back(message);
}

void PlainProtocol::createProtocolFile(int protocolType, const QString& path)
{
    QString head;
    QString tail;
    readTemplate(head, tail);
    readDataFile();
    const QString page = head + makeProtocolPage(protocolType) + tail;
    writeDataFile();

    QtFile file(path);
    file.open(QIODevice::WriteOnly);
    file.device()->write(page.toUtf8());
    file.close();
}

QString PlainProtocol::createItemHtml(LONGID id)
{
    QString html;
    QString tail;
    readTemplate(html, tail);
    readDataFile();
    appendItemData(id, html);
    html += tail;
    writeDataFile();
    return html;
}

QString PlainProtocol::makeProtocolPage(int protocolType) const
{
    List list;
    const auto found = messages.find(protocolType);
    if (found != messages.end()) {
        for (const COVMessage& message : found->second)
            list.push_back(&message);
    }

    QString html;
    for (const COVMessage* message : selectKind(list, COVMessage::Title))
        html += QStringLiteral("<h1>") + message->text + QStringLiteral("</h1>\n");
    html += QStringLiteral("<div class='serviceinfoblock'>\n");
    for (const COVMessage* message : selectKind(list, COVMessage::Service))
        html += QStringLiteral("<p class='service'>") + message->text + QStringLiteral("</p>\n");
    for (const COVMessage* message : selectKind(list, COVMessage::Statistics))
        html += QStringLiteral("<p>") + message->text + QStringLiteral("</p>\n");

    if (protocolType == enums::Adjust)
        appendStageBlocks(list, html);
    else
        appendGroupedData(list, true, html);
    return html;
}

void PlainProtocol::appendStageBlocks(const List& list, QString& html) const
{
    std::map<int, QString> captions;
    for (const COVMessage* message : selectKind(list, COVMessage::Stage))
        captions.emplace(message->stage, message->text);
    Groups<int> byStage;
    for (const COVMessage* message : list)
        byStage[message->stage].push_back(message);

    for (const auto& [stage, group] : byStage) {
        if (stage == 0)
            continue;
        List lines = group;
        dropKind(lines, COVMessage::Stage);
        html += QStringLiteral("<div class='stageblock'>\n") + makeListStart();
        html += stage == 2 ? QStringLiteral("<li class=\"IsRoot IsLast ExpandOpen\">\n")
                           : QStringLiteral("<li class=\"IsRoot IsLast ExpandClosed\">\n");
        html += makeExpand() + makeContent(captions[stage] + getCount(lines.size()));
        if (stage == 2)
            appendList(lines, html);
        else
            appendGroupedData(lines, false, html);
        html += QStringLiteral("</li>\n</ul>\n</div>\n");
    }
}

void PlainProtocol::appendGroupedData(const List& list, bool asRoot, QString& html) const
{
    const QString topNode = QStringLiteral("<li class=\"%1 IsLast ExpandOpen\">\n")
                                .arg(asRoot ? QStringLiteral("IsRoot") : QStringLiteral("Node"));
    List problems = selectKind(list, COVMessage::Error);
    const List warnings = selectKind(list, COVMessage::Warning);
    problems.insert(problems.end(), warnings.begin(), warnings.end());
    if (!problems.empty()) {
        Groups<int> byItemType;
        for (const COVMessage* message : problems)
            addToGroups(message, message->itemTypes, byItemType);
        html += QStringLiteral("<div class='errorblock'>\n") + makeListStart() + topNode + makeExpand();
        html += makeContent(QStringLiteral("Ошибки и предупреждения") + getCount(problems.size()));
        html += makeListStart();
        for (const auto& [itemType, group] : byItemType)
            appendItemTypeNode(itemType, group, html);
        html += QStringLiteral("</ul>\n</li>\n</ul>\n</div>\n");
    }

    const List plain = selectKind(list, COVMessage::Message);
    if (!plain.empty()) {
        html += QStringLiteral("<div class='messageblock'>\n") + makeListStart() + topNode + makeExpand();
        html += makeContent(QStringLiteral("Сообщения") + getCount(plain.size()));
        appendList(plain, html);
        html += QStringLiteral("</li>\n</ul>\n</div>\n");
    }
}

void PlainProtocol::appendItemTypeNode(int itemType, const List& list, QString& html) const
{
    const QString groupName = getGroupName(itemType);
    if (groupName.isEmpty())
        return;
    html += QStringLiteral("<li class=\"Node ExpandOpen\">\n") + makeExpand();
    html += makeContent(groupName + getCount(list.size()));
    if (itemType == kPointItemType || itemType == kSectionItemType)
        appendItemNodes(itemType, list, html);
    else
        appendList(list, html);
    html += QStringLiteral("</li>\n");
}

void PlainProtocol::appendItemNodes(int itemType, const List& list, QString& html) const
{
    Groups<LONGID> byItem;
    for (const COVMessage* message : list)
        addToGroups(message, message->itemIds, byItem);
    std::multimap<QString, List> byCaption;
    for (const auto& [id, group] : byItem) {
        if (group.front()->GetItemTypeByID(id) == itemType)
            byCaption.emplace(getItemLink(group.front()->text, id), group);
    }

    html += makeListStart();
    for (const auto& [caption, group] : byCaption) {
        html += QStringLiteral("<li class=\"Node ExpandClosed\">\n") + makeExpand();
        html += makeContent(caption + getCount(group.size()));
        appendList(group, html);
        html += QStringLiteral("</li>\n");
    }
    html += QStringLiteral("</ul>\n");
}

void PlainProtocol::appendItemData(LONGID id, QString& html) const
{
    Groups<int> byProtocolType;
    for (const auto& [protocolType, list] : messages) {
        for (const COVMessage& message : list) {
            if (message.IsItemMessage(id))
                byProtocolType[protocolType].push_back(&message);
        }
    }
    if (byProtocolType.empty())
        return;

    const QString projectName = QString::fromLatin1(QUrl::toPercentEncoding(model.getProject()->getName()));
    html += QStringLiteral("<div class='errorblock'>\n") + makeListStart();
    html += QStringLiteral("<li class=\"IsRoot IsLast ExpandOpen\">\n") + makeExpand();
    html += makeContent(QStringLiteral("Ошибки и предупреждения")) + makeListStart();
    for (const auto& [protocolType, list] : byProtocolType) {
        const QString name = QString::fromStdWString(getEnumData(protocolType).getTextSingular());
        html += QStringLiteral("<li class=\"Node ExpandOpen\">\n") + makeExpand();
        html += makeContent(QStringLiteral("<a href=\"%1://generate-protocol?id=%2&project=%3\">%4</a>")
                                .arg(sample::getScheme(), QString::number(protocolType), projectName, name));
        appendList(list, html);
        html += QStringLiteral("</li>\n");
    }
    html += QStringLiteral("</ul>\n</li>\n</ul>\n</div>\n");
}

} // namespace orvel::bench
