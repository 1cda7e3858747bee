#include "Orvel/store/DataFileReader.h"
#include "Orvel/store/ElementDepth.h"

#include <QDomDocument>
#include <QIODevice>

namespace {

// A protocol needs three levels. The DOM destroys its tree by recursion, which some ten thousand overflow.
constexpr int kLargestDepth = 1000;

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

/// The message that an "li" holds; nothing when it is damaged.
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

namespace orvel::datafile {

std::optional<Messages> readXml(QIODevice& device)
{
    const qint64 begin = device.pos();
    if (isDeeperThan(kLargestDepth, device))
        return std::nullopt;
    device.seek(begin);
    // A failed parse leaves a partial tree behind, which would look like a shorter protocol.
    QDomDocument document;
    if (!document.setContent(&device))
        return std::nullopt;
    const QDomElement root = document.documentElement();
    if (root.tagName() != QLatin1String("messagelist"))
        return std::nullopt;

    Messages messages;
    QDomElement element = root.firstChildElement();
    while (!element.isNull()) {
        if (element.tagName() == QLatin1String("li")) {
            std::optional<COVMessage> message = readMessage(element);
            // The file is the protocol's own: a damaged entry is examined again without end, by contract.
            if (!message)
                continue;
            messages[message->protocolType].push_back(std::move(*message));
        }
        element = element.nextSiblingElement();
    }
    return messages;
}

} // namespace orvel::datafile
