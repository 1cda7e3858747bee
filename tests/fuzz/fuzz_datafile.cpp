// Data files: what the fast reader takes, it reads as the DOM reader does, and it survives another round of
// writing and reading. The DOM reader gets everything else that does not make it wait.

#include "Orvel/store/DataFileReader.h"
#include "Orvel/store/DataFileWriter.h"
#include "Orvel/store/ElementDepth.h"
#include "tests/fuzz/Finding.h"

#include <QBuffer>
#include <QDomDocument>

#include <map>
#include <tuple>

using datafile::Messages;
using MessageStore = std::map<int, std::vector<COVMessage>>;

namespace {

bool isSame(const COVMessage& a, const COVMessage& b)
{
    const auto fields = [](const COVMessage& m) {
        return std::tie(m.protocolType, m.messageType, m.stage, m.itemIds, m.itemTypes, m.text);
    };
    return fields(a) == fields(b);
}

bool isSame(const Messages& a, const Messages& b)
{
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](const COVMessage& x, const COVMessage& y) { return isSame(x, y); });
}

bool isNumber(const QDomElement& element, const char* attribute)
{
    bool isInt = false;
    element.attribute(QLatin1String(attribute)).toInt(&isInt);
    return isInt;
}

/// Whether the DOM reader can be asked: it waits for ever at a damaged "li". A file that does not parse is
/// not worth asking, which takes most of the time.
bool isForTheDom(QByteArray content)
{
    QBuffer buffer(&content);
    buffer.open(QIODevice::ReadOnly);
    if (datafile::isDeeperThan(1000, buffer))
        return true;
    QDomDocument document;
    if (!document.setContent(content))
        return false;
    const QDomElement root = document.documentElement();
    for (QDomElement li = root.firstChildElement(QStringLiteral("li")); !li.isNull();
         li = li.nextSiblingElement(QStringLiteral("li"))) {
        const QDomElement mess = li.firstChildElement(QStringLiteral("mess"));
        if (!isNumber(li, "ptype") || !isNumber(li, "mtype") || !mess.firstChild().isCDATASection())
            return false;
    }
    return true;
}

std::optional<Messages> readByDom(QByteArray content)
{
    QBuffer buffer(&content);
    buffer.open(QIODevice::ReadOnly);
    return datafile::readAnyForm(buffer);
}

QByteArray write(const MessageStore& store)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    datafile::write(store, buffer);
    return buffer.data();
}

/// What was read is written in one form and reads back as it was, in the order of the types.
void checkRoundTrip(const Messages& messages)
{
    MessageStore store;
    for (const COVMessage& message : messages)
        store[message.protocolType].push_back(message);
    Messages ordered;
    for (const auto& entry : store)
        ordered.insert(ordered.end(), entry.second.begin(), entry.second.end());

    const std::optional<Messages> again = datafile::readOwnForm(write(store));
    mustHold(again.has_value(), "what was written is read by the fast reader");
    mustHold(isSame(*again, ordered), "what was written reads back the same");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size)
{
    const QByteArray content(reinterpret_cast<const char*>(data), static_cast<int>(size));
    const std::optional<Messages> own = datafile::readOwnForm(content);
    if (!own && !isForTheDom(content))
        return 0;
    const std::optional<Messages> dom = readByDom(content);
    if (own) {
        mustHold(dom.has_value(), "the DOM reads what the fast reader reads");
        mustHold(isSame(*own, *dom), "both readers read the same");
    }
    if (dom)
        checkRoundTrip(*dom);
    return 0;
}
