#include "bench/programs/StreamDataFile.h"

#include <QXmlStreamReader>
#include <QXmlStreamWriter>

namespace orvel::bench::stream {

namespace {

COVMessage readMessage(QXmlStreamReader& xml)
{
    const QXmlStreamAttributes attributes = xml.attributes();
    COVMessage message(attributes.value(QLatin1String("ptype")).toInt(),
                       attributes.value(QLatin1String("mtype")).toInt(), std::vector<LONGID>(),
                       std::vector<int>(), QString(), 0);
    while (xml.readNextStartElement()) {
        const QXmlStreamAttributes child = xml.attributes();
        if (xml.name() == QLatin1String("item")) {
            message.itemIds.push_back(child.value(QLatin1String("iid")).toLongLong());
            message.itemTypes.push_back(child.value(QLatin1String("itype")).toInt());
            xml.skipCurrentElement();
        } else {
            message.stage = child.value(QLatin1String("sid")).toInt();
            message.text = xml.readElementText();
        }
    }
    return message;
}

void writeMessage(const COVMessage& message, QXmlStreamWriter& xml)
{
    xml.writeStartElement(QStringLiteral("li"));
    xml.writeAttribute(QStringLiteral("ptype"), QString::number(message.protocolType));
    xml.writeAttribute(QStringLiteral("mtype"), QString::number(message.messageType));
    for (std::size_t i = 0; i < message.itemIds.size(); ++i) {
        xml.writeEmptyElement(QStringLiteral("item"));
        xml.writeAttribute(QStringLiteral("iid"), QString::number(message.itemIds[i]));
        xml.writeAttribute(QStringLiteral("itype"), QString::number(message.itemTypes[i]));
    }
    xml.writeStartElement(QStringLiteral("mess"));
    if (message.stage != 0)
        xml.writeAttribute(QStringLiteral("sid"), QString::number(message.stage));
    xml.writeCDATA(message.text);
    xml.writeEndElement();
    xml.writeEndElement();
}

} // namespace

sample::MessageStore readDataFile(QIODevice& device)
{
    sample::MessageStore store;
    QXmlStreamReader xml(&device);
    xml.readNextStartElement();
    while (xml.readNextStartElement()) {
        COVMessage message = readMessage(xml);
        store[message.protocolType].push_back(std::move(message));
    }
    return store;
}

void writeDataFile(const sample::MessageStore& store, QIODevice& device)
{
    QXmlStreamWriter xml(&device);
    xml.setAutoFormatting(true);
    xml.setAutoFormattingIndent(4);
    xml.writeStartDocument();
    xml.writeDTD(QStringLiteral("<!DOCTYPE zarnik_vok_protocol>"));
    xml.writeStartElement(QStringLiteral("messagelist"));
    for (const auto& [protocolType, list] : store) {
        for (const COVMessage& message : list)
            writeMessage(message, xml);
    }
    xml.writeEndElement();
    xml.writeEndDocument();
}

} // namespace orvel::bench::stream
