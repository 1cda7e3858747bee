#include "apps/desk/document/ProtocolSummary.h"

#include "Orvel/Toolkit.h"

#include <QBuffer>
#include <QSet>
#include <QXmlStreamReader>

#include <algorithm>
#include <set>

namespace orvel::desk {

namespace {

int toNumber(const QXmlStreamReader& xml, QLatin1String attribute)
{
    return xml.attributes().value(attribute).toInt();
}

void countKind(int kind, ProtocolSummary::Counts& counts)
{
    ++counts.all;
    if (kind == COVMessage::Error)
        ++counts.errors;
    else if (kind == COVMessage::Warning)
        ++counts.warnings;
    else if (kind == COVMessage::Message)
        ++counts.messages;
}

/// Counts a line that mentions the item.
void countItem(LONGID item, int kind, ProtocolSummary& summary)
{
    ++summary.linesOfItem[item];
    if (kind < COVMessage::Error || kind > COVMessage::Message)
        return;
    // The graver a kind, the smaller its number.
    const auto type = static_cast<COVMessage::MessageType>(kind);
    const auto known = summary.worstOfItem.find(item);
    if (known == summary.worstOfItem.end())
        summary.worstOfItem.insert(item, type);
    else
        *known = std::min(*known, type);
}

/// Notes when a run ended, if this is the line that says it.
void takeTime(const QString& text, ProtocolSummary::Counts& counts)
{
    const QDateTime time = QDateTime::fromString(text, QStringLiteral("dd.MM.yyyy hh:mm:ss"));
    if (time.isValid())
        counts.ended = time;
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
        const int kind = toNumber(xml, QLatin1String("mtype"));
        countKind(kind, summary.types[toNumber(xml, QLatin1String("ptype"))]);
        for (const LONGID item : readItems(xml))
            countItem(item, kind, summary);
    }
    return summary;
}

} // namespace

std::optional<COVMessage::MessageType> ProtocolSummary::findWorst(LONGID item) const
{
    const auto found = worstOfItem.find(item);
    return found == worstOfItem.end() ? std::nullopt : std::make_optional(*found);
}

ProtocolSummary ProtocolSummary::of(const QByteArray& dataContent)
{
    QByteArray content = dataContent;
    QBuffer buffer(&content);
    buffer.open(QIODevice::ReadOnly);
    const std::optional<ProtocolSummary> summary = ofCanonical(buffer);
    return summary ? *summary : countForeign(content);
}

std::optional<ProtocolSummary> ProtocolSummary::ofCanonical(QIODevice& dataFile)
{
    ProtocolSummary summary;
    const auto count = [&summary](const COVMessage& line) {
        ProtocolSummary::Counts& counts = summary.types[line.protocolType];
        countKind(line.messageType, counts);
        if (line.messageType == COVMessage::Service)
            takeTime(line.text, counts);
        for (const LONGID item : std::set<LONGID>(line.itemIds.begin(), line.itemIds.end()))
            countItem(item, line.messageType, summary);
    };
    if (!datafile::visitCanonical(dataFile, count))
        return std::nullopt;
    return summary;
}

} // namespace orvel::desk
