// Data files: what the fast reader takes, it reads as the DOM reader does, and it survives another round of
// writing and reading. The DOM reader gets everything else that does not make it wait.

#include "Orvel/store/DataFileReader.h"
#include "Orvel/store/DataFileWriter.h"
#include "tests/fuzz/Finding.h"
#include "tests/support/MessageText.h"

#include <QBuffer>
#include <QDomDocument>

#include <algorithm>
#include <tuple>

using orvel::datafile::Messages;

namespace {

/// A file that gives few bytes at a time, so that its pieces end anywhere.
class ShortReads : public QBuffer
{
public:
    using QBuffer::QBuffer;

protected:
    qint64 readData(char* data, qint64 size) override
    {
        return QBuffer::readData(data, std::min<qint64>(size, 1 + pos() % 61));
    }
};

bool isSame(const COVMessage& a, const COVMessage& b)
{
    const auto fields = [](const COVMessage& m) {
        return std::tie(m.protocolType, m.messageType, m.stage, m.itemIds, m.itemTypes, m.text);
    };
    return fields(a) == fields(b);
}

bool isSame(const Messages& a, const Messages& b)
{
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](const auto& x, const auto& y) {
        return x.first == y.first &&
               std::equal(x.second.begin(), x.second.end(), y.second.begin(), y.second.end(),
                          [](const COVMessage& m, const COVMessage& n) { return isSame(m, n); });
    });
}

bool isNumber(const QDomElement& element, const char* attribute)
{
    bool isInt = false;
    element.attribute(QLatin1String(attribute)).toInt(&isInt);
    return isInt;
}

/// Whether the DOM reader can be asked: it waits for ever at a damaged "li". A file that does not parse is
/// not worth asking, which takes most of the time. No input is long enough for elements that lie too deep.
bool isForTheDom(const QByteArray& content)
{
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

template<typename Device>
std::optional<Messages> read(std::optional<Messages> (*reader)(QIODevice&), QByteArray content)
{
    Device device(&content);
    device.open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    return reader(device);
}

/// A foreign encoding can bring what the protocol's own files cannot carry.
Messages carried(Messages messages)
{
    for (auto& entry : messages) {
        for (COVMessage& message : entry.second)
            message.text = ::carried(message.text);
    }
    return messages;
}

QByteArray write(const Messages& messages)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    orvel::datafile::write(messages, buffer);
    return buffer.data();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size)
{
    const QByteArray content(reinterpret_cast<const char*>(data), static_cast<int>(size));
    const std::optional<Messages> own = read<QBuffer>(orvel::datafile::readCanonical, content);
    const std::optional<Messages> inPieces = read<ShortReads>(orvel::datafile::readCanonical, content);
    if (inPieces)
        mustHold(own && isSame(*own, *inPieces), "pieces make no difference");
    if (!own && !isForTheDom(content))
        return 0;
    const std::optional<Messages> dom = read<QBuffer>(orvel::datafile::readXml, content);
    if (own) {
        mustHold(dom.has_value(), "the DOM reads what the fast reader reads");
        mustHold(isSame(*own, *dom), "both readers read the same");
    }
    if (dom) {
        const std::optional<Messages> again = read<QBuffer>(orvel::datafile::readCanonical, write(*dom));
        mustHold(again.has_value(), "what was written is read by the fast reader");
        mustHold(isSame(*again, carried(*dom)), "what was written reads back the same");
    }
    return 0;
}
