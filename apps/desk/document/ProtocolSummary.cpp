#include "apps/desk/document/ProtocolSummary.h"

#include "Orvel/Toolkit.h"

#include <QBuffer>
#include <QSet>
#include <QXmlStreamReader>

#include <set>

namespace orvel::desk {

namespace {

int toNumber(const QXmlStreamReader& xml, QLatin1String attribute)
{
    return xml.attributes().value(attribute).toInt();
}

void countKind(int kind, ProtocolSummary::Counts& counts)
{
    if (kind == COVMessage::Error)
        ++counts.errors;
    else if (kind == COVMessage::Warning)
        ++counts.warnings;
    else if (kind == COVMessage::Message)
        ++counts.messages;
}

/// The file's content with blanks for control characters: a protocol keeps them in its texts, and the stream
/// reader would end at the first one.
QByteArray withoutControls(QByteArray content)
{
    for (char& c : content) {
        if (c >= 0 && c < ' ' && c != '\t' && c != '\n' && c != '\r')
            c = ' ';
    }
    return content;
}

/// Reads the items of one line; one that is named twice counts once.
QSet<LONGID> readItems(QXmlStreamReader& xml)
{
    QSet<LONGID> items;
    while (xml.readNextStartElement()) {
        if (xml.name() == QLatin1String("item"))
            items.insert(xml.attributes().value(QLatin1String("iid")).toLongLong());
        xml.skipCurrentElement();
    }
    return items;
}

ProtocolSummary count(const datafile::Messages& messages)
{
    ProtocolSummary summary;
    for (const auto& [type, lines] : messages) {
        ProtocolSummary::Counts& counts = summary.types[type];
        for (const COVMessage& line : lines) {
            countKind(line.messageType, counts);
            for (const LONGID item : std::set<LONGID>(line.itemIds.begin(), line.itemIds.end()))
                ++summary.linesOfItem[item];
        }
    }
    return summary;
}

/// Counts what another program has written, as far as it can be understood.
ProtocolSummary countForeign(const QByteArray& content)
{
    ProtocolSummary summary;
    QXmlStreamReader xml(withoutControls(content));
    xml.readNextStartElement();
    while (xml.readNextStartElement()) {
        if (xml.name() != QLatin1String("li")) {
            xml.skipCurrentElement();
            continue;
        }
        countKind(toNumber(xml, QLatin1String("mtype")),
                  summary.types[toNumber(xml, QLatin1String("ptype"))]);
        for (const LONGID item : readItems(xml))
            ++summary.linesOfItem[item];
    }
    return summary;
}

} // namespace

ProtocolSummary ProtocolSummary::of(const QByteArray& dataContent)
{
    QByteArray content = dataContent;
    QBuffer buffer(&content);
    buffer.open(QIODevice::ReadOnly);
    const auto messages = datafile::readCanonical(buffer);
    return messages ? count(*messages) : countForeign(content);
}

} // namespace orvel::desk
