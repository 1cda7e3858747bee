#include "Orvel/html/ProjectItemLinks.h"
#include "Orvel/store/COrvel.h"
#include "Orvel/store/LinkScanner.h"
#include "host/enums/EnumData.h"
#include "host/model/CProjectModel.h"

#include <QUrl>

std::wstring COrvel::GetItemLink(LONGID itemId, const std::wstring& text) const
{
    const QString type = QString::fromStdString(getEnumData(GetItemTypeByID(itemId)).getTextInternal());
    return orvel::makeItemLink(uriScheme, type, itemId, GetEncodedProjectName(),
                               QString::fromStdWString(text))
        .toStdWString();
}

qor::ItemLinksPtr COrvel::GetItemLinks() const
{
    return orvel::ProjectItemLinks::make(*model, uriScheme, GetEncodedProjectName());
}

std::wstring COrvel::GetModelElementLink(CModelElement* element, const std::wstring& text) const
{
    return element ? GetItemLink(element->getId(), text) : text;
}

QString COrvel::GetMessageItemLink(const QString& messageText, LONGID itemId, QString& linkText)
{
    const QString anchor = orvel::links::getItemAnchor(messageText, itemId).toString();
    // From the last but one character on, so that the end of "</a>" does not count.
    const int textBegin = anchor.lastIndexOf(QLatin1Char('>'), anchor.size() - 2);
    if (textBegin >= 0)
        linkText = anchor.mid(textBegin).remove(QLatin1String("</a>"));
    return anchor;
}

QString COrvel::GetMessageStyleClass(const COVMessage& message)
{
    switch (message.messageType) {
    case COVMessage::Title:
        return QStringLiteral("title");
    case COVMessage::Service:
        return QStringLiteral("service");
    case COVMessage::Statistics:
        return QStringLiteral("statistics");
    case COVMessage::Error:
        return QStringLiteral("error");
    case COVMessage::Warning:
        return QStringLiteral("warning");
    case COVMessage::Message:
        return QStringLiteral("message");
    case COVMessage::Stage:
        break;
    }
    return QString();
}

QString COrvel::GetProtocolLink(int type, const QString& text) const
{
    return QStringLiteral("<a href=\"%1://generate-protocol?id=%2&project=%3\">%4</a>")
        .arg(uriScheme, QString::number(type), GetEncodedProjectName(), text);
}

QString COrvel::GetReportLink(int type, const QString& text) const
{
    return QStringLiteral("<li><a href=\"%1://generate-report?id=%2&project=%3\">%4</a></li>")
        .arg(uriScheme, QString::number(type), GetEncodedProjectName(), text);
}

QString COrvel::GetEncodedProjectName() const
{
    return QString::fromLatin1(QUrl::toPercentEncoding(GetProjectName()));
}
