#include "Orvel/store/COrvel.h"
#include "host/app/Application.h"
#include "host/files/CFileException.h"
#include "host/files/QtFile.h"

#include <QDomDocument>
#include <QFile>
#include <QTextStream>

#include <optional>

namespace {

const QString& cdataEnd()
{
    static const QString end = QStringLiteral("]]>");
    return end;
}

/// The text with what XML can't carry replaced by U+FFFD: lone surrogates and the two code units that the
/// reader takes for its own end marks. One such character would cost every message in the file.
QString toXmlText(const QString& text)
{
    QString result = text;
    const int size = result.size();
    for (int i = 0; i < size; ++i) {
        const QChar c = text[i];
        if (c.isHighSurrogate() && i + 1 < size && text[i + 1].isLowSurrogate())
            ++i;
        else if (c.isSurrogate() || c.unicode() >= 0xFFFE)
            result[i] = QChar::ReplacementCharacter;
    }
    return result;
}

/// Appends `text` as CDATA sections to `parent`. A "]]>" is split between two sections, since it would end
/// its own.
void appendText(QDomDocument& document, QDomElement& parent, const QString& text)
{
    const QString xmlText = toXmlText(text);
    int begin = 0;
    for (int end = xmlText.indexOf(cdataEnd()); end >= 0; end = xmlText.indexOf(cdataEnd(), begin)) {
        parent.appendChild(document.createCDATASection(xmlText.mid(begin, end + 2 - begin)));
        begin = end + 2;
    }
    parent.appendChild(document.createCDATASection(xmlText.mid(begin)));
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

/// The joined text of the CDATA sections that "mess" begins with; nothing when it does not begin with one.
std::optional<QString> readText(const QDomElement& mess)
{
    QDomCDATASection section = mess.firstChild().toCDATASection();
    if (section.isNull())
        return std::nullopt;
    QString text = section.data();
    for (section = section.nextSibling().toCDATASection(); !section.isNull();
         section = section.nextSibling().toCDATASection())
        text += section.data();
    return text;
}

/// The message that a "li" holds; nothing when it is damaged.
std::optional<COVMessage> readMessage(const QDomElement& li)
{
    bool hasProtocolType = false;
    bool hasMessageType = false;
    const int protocolType = li.attribute(QStringLiteral("ptype")).toInt(&hasProtocolType);
    const int messageType = li.attribute(QStringLiteral("mtype")).toInt(&hasMessageType);
    if (!hasProtocolType || !hasMessageType)
        return std::nullopt;

    std::vector<LONGID> ids;
    std::vector<int> types;
    const QDomNodeList items = li.elementsByTagName(QStringLiteral("item"));
    for (int i = 0; i < items.size(); ++i) {
        const QDomElement item = items.at(i).toElement();
        bool hasId = false;
        bool hasType = false;
        const LONGID id = item.attribute(QStringLiteral("iid")).toLongLong(&hasId);
        const int type = item.attribute(QStringLiteral("itype")).toInt(&hasType);
        if (hasId && hasType) {
            ids.push_back(id);
            types.push_back(type);
        }
    }

    const QDomElement mess = li.firstChildElement(QStringLiteral("mess"));
    const std::optional<QString> text = readText(mess);
    if (!text)
        return std::nullopt;
    const int stage = mess.attribute(QStringLiteral("sid")).toInt();
    return COVMessage(protocolType, messageType, ids, types, *text, stage);
}

} // namespace

bool COrvel::WriteXML()
{
    const QString path = dataFilePath;
    if (path.isEmpty())
        return false;
    try {
        QtFile file(path);
        file.open(QIODevice::WriteOnly);

        QDomDocument document(QStringLiteral("zarnik_vok_protocol"));
        document.appendChild(document.createProcessingInstruction(
            QStringLiteral("xml"), QStringLiteral("version=\"1.0\" encoding=\"utf-8\"")));
        QDomElement root = document.createElement(QStringLiteral("messagelist"));
        document.appendChild(root);
        for (const auto& [protocolType, list] : messages) {
            for (const COVMessage& message : list)
                root.appendChild(createMessageElement(document, message));
        }

        QTextStream stream(file.device());
        document.save(stream, 4, QDomNode::EncodingFromDocument);
        stream.flush();
        file.close();
        messages.clear();
        return true;
    } catch (const qor::CFileException& error) {
        messages.clear();
        Application::warning(QString::fromStdWString(error.getDescription()), nullptr);
        return false;
    }
}

bool COrvel::ReadXML()
{
    const QString path = dataFilePath;
    messages.clear();
    if (!QFile::exists(path))
        return false;
    try {
        QtFile file(path);
        file.open(QIODevice::ReadOnly);
        // A failed parse leaves a partial tree behind, which would look like a shorter protocol.
        QDomDocument document;
        if (!document.setContent(file.device()))
            return false;
        const QDomElement root = document.documentElement();
        if (root.tagName() != QLatin1String("messagelist"))
            return false;

        QDomElement element = root.firstChildElement();
        while (!element.isNull()) {
            if (element.tagName() == QLatin1String("li")) {
                const std::optional<COVMessage> message = readMessage(element);
                // The file is this class's own: a damaged entry is examined again without end, by contract.
                if (!message)
                    continue;
                AddMessage(*message);
            }
            element = element.nextSiblingElement();
        }
        file.close();
        return true;
    } catch (const qor::CFileException& error) {
        messages.clear();
        Application::warning(QString::fromStdWString(error.getDescription()), nullptr);
        return false;
    }
}

QString COrvel::GetProtocolFilePath(int type)
{
    const auto found = protocolFiles.find(type);
    return found == protocolFiles.end() ? QString() : found->second;
}
