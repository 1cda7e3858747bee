#include "tests/reference/DomDataFile.h"

#include <QDomDocument>
#include <QTextStream>

namespace {

QString toXmlText(QString text)
{
    for (int i = 0; i < text.size(); ++i) {
        const QChar c = text[i];
        const bool startsPair = c.isHighSurrogate() && i + 1 < text.size() && text.at(i + 1).isLowSurrogate();
        if (startsPair)
            ++i;
        else if (c.isSurrogate() || c == QChar(0xFFFE) || c == QChar(0xFFFF))
            text[i] = QChar::ReplacementCharacter;
    }
    return text;
}

void appendText(QDomDocument& document, QDomElement& mess, const QString& text)
{
    QStringList sections = toXmlText(text).split(QStringLiteral("]]>"));
    for (int i = 0; i < sections.size(); ++i) {
        QString section = sections[i];
        if (i > 0)
            section.prepend(QLatin1Char('>'));
        if (i + 1 < sections.size())
            section.append(QStringLiteral("]]"));
        mess.appendChild(document.createCDATASection(section));
    }
}

QDomElement createMessageElement(QDomDocument& document, const COVMessage& message)
{
    QDomElement li = document.createElement(QStringLiteral("li"));
    li.setAttribute(QStringLiteral("ptype"), static_cast<qlonglong>(message.protocolType));
    li.setAttribute(QStringLiteral("mtype"), static_cast<qlonglong>(message.messageType));
    for (std::size_t i = 0; i < message.itemIds.size(); ++i) {
        QDomElement item = document.createElement(QStringLiteral("item"));
        item.setAttribute(QStringLiteral("iid"), static_cast<qlonglong>(message.itemIds[i]));
        item.setAttribute(QStringLiteral("itype"), static_cast<qlonglong>(message.itemTypes[i]));
        li.appendChild(item);
    }
    QDomElement mess = document.createElement(QStringLiteral("mess"));
    if (message.stage != 0)
        mess.setAttribute(QStringLiteral("sid"), static_cast<qlonglong>(message.stage));
    appendText(document, mess, message.text);
    li.appendChild(mess);
    return li;
}

} // namespace

namespace reference {

void writeDataFile(const MessageStore& messages, QIODevice& device)
{
    QDomDocument document(QStringLiteral("zarnik_vok_protocol"));
    document.appendChild(document.createProcessingInstruction(
        QStringLiteral("xml"), QStringLiteral("version=\"1.0\" encoding=\"utf-8\"")));
    QDomElement root = document.createElement(QStringLiteral("messagelist"));
    document.appendChild(root);
    for (const auto& [protocolType, list] : messages) {
        for (const COVMessage& message : list)
            root.appendChild(createMessageElement(document, message));
    }
    QTextStream stream(&device);
    document.save(stream, 4, QDomNode::EncodingFromDocument);
}

} // namespace reference
