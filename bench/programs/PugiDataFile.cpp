#include "bench/programs/PugiDataFile.h"

#include <QIODevice>

#include <cstring>
#include <pugixml.hpp>

namespace orvel::bench::pugidata {

namespace {

QString toQString(const char* utf8)
{
    return QString::fromUtf8(utf8, static_cast<int>(std::strlen(utf8)));
}

COVMessage readMessage(const pugi::xml_node& li)
{
    const pugi::xml_node mess = li.child("mess");
    COVMessage message(li.attribute("ptype").as_int(), li.attribute("mtype").as_int(), std::vector<LONGID>(),
                       std::vector<int>(), toQString(mess.child_value()), mess.attribute("sid").as_int());
    for (const pugi::xml_node item : li.children("item")) {
        message.itemIds.push_back(item.attribute("iid").as_llong());
        message.itemTypes.push_back(item.attribute("itype").as_int());
    }
    return message;
}

void appendMessage(const COVMessage& message, pugi::xml_node& list)
{
    pugi::xml_node li = list.append_child("li");
    li.append_attribute("ptype").set_value(message.protocolType);
    li.append_attribute("mtype").set_value(static_cast<int>(message.messageType));
    for (std::size_t i = 0; i < message.itemIds.size(); ++i) {
        pugi::xml_node item = li.append_child("item");
        item.append_attribute("iid").set_value(message.itemIds[i]);
        item.append_attribute("itype").set_value(message.itemTypes[i]);
    }
    pugi::xml_node mess = li.append_child("mess");
    if (message.stage != 0)
        mess.append_attribute("sid").set_value(message.stage);
    mess.append_child(pugi::node_cdata).set_value(message.text.toUtf8().constData());
}

class DeviceWriter : public pugi::xml_writer
{
public:
    explicit DeviceWriter(QIODevice& target) : device(target) {}

    void write(const void* data, std::size_t size) override
    {
        device.write(static_cast<const char*>(data), static_cast<qint64>(size));
    }

private:
    QIODevice& device;
};

} // namespace

sample::MessageStore readDataFile(QIODevice& device)
{
    sample::MessageStore store;
    QByteArray content = device.readAll();
    pugi::xml_document document;
    document.load_buffer_inplace(content.data(), static_cast<std::size_t>(content.size()),
                                 pugi::parse_minimal | pugi::parse_cdata, pugi::encoding_utf8);
    for (const pugi::xml_node li : document.child("messagelist").children("li")) {
        COVMessage message = readMessage(li);
        store[message.protocolType].push_back(std::move(message));
    }
    return store;
}

void writeDataFile(const sample::MessageStore& store, QIODevice& device)
{
    pugi::xml_document document;
    pugi::xml_node declaration = document.append_child(pugi::node_declaration);
    declaration.append_attribute("version").set_value("1.0");
    declaration.append_attribute("encoding").set_value("utf-8");
    document.append_child(pugi::node_doctype).set_value("zarnik_vok_protocol");
    pugi::xml_node messages = document.append_child("messagelist");
    for (const auto& [protocolType, list] : store) {
        for (const COVMessage& message : list)
            appendMessage(message, messages);
    }
    DeviceWriter writer(device);
    document.save(writer, "    ", pugi::format_indent, pugi::encoding_utf8);
}

} // namespace orvel::bench::pugidata
