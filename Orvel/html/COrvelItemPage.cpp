#include "Orvel/html/TreeMarkup.h"
#include "Orvel/store/COrvel.h"

#include <QCoreApplication>

namespace tree = orvel::tree;

bool COrvel::CreateItemHtml(LONGID itemId, QString& html)
{
    html.clear();
    QString tail;
    ParseHtmlTemplate(html, tail);
    ReadXML();
    GetHtmlItemData(itemId, html);
    html += tail;
    WriteXML();
    return true;
}

bool COrvel::GetHtmlItemData(LONGID itemId, QString& text)
{
    MessageGroups<int> byProtocolType;
    for (auto& [protocolType, list] : messages) {
        for (COVMessage& message : list) {
            if (message.IsItemMessage(itemId))
                byProtocolType[protocolType].push_back(&message);
        }
    }
    if (byProtocolType.empty())
        return false;

    orvel::HtmlOutput html(text);
    html << QLatin1String("<div class='errorblock'>\n");
    tree::openContainer(html);
    tree::openNode(QLatin1String("IsRoot IsLast ExpandOpen"), html);
    tree::appendCaption(QCoreApplication::translate("Orvel", "Ошибки и предупреждения"), 0, html);
    tree::openContainer(html);
    for (const auto& [protocolType, list] : byProtocolType) {
        const QString typeName = GetProtocolTitle(protocolType);
        const QString path = GetProtocolFilePath(protocolType);
        const QString title = path.isEmpty() ? GetProtocolLink(protocolType, typeName)
                                             : QStringLiteral("<a href=\"%1\">%2</a>").arg(path, typeName);
        tree::openNode(QLatin1String("Node ExpandOpen"), html);
        tree::appendCaption(title, 0, html);
        GetHtmlList(list, html);
        tree::closeNode(html);
    }
    tree::closeContainer(html);
    tree::closeNode(html);
    tree::closeContainer(html);
    html << QLatin1String("</div>\n");
    return true;
}
