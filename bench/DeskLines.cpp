#include "bench/DeskLines.h"

#include "Orvel/store/COrvel.h"
#include "apps/desk/document/Document.h"
#include "bench/SampleMessages.h"
#include "bench/programs/DirectMonitor.h"

namespace orvel::bench {

namespace {

struct Item
{
    LONGID id;
    QString name;
};

std::vector<Item> listItems(const desk::Document& document)
{
    std::vector<Item> items;
    for (const desk::LevellingSection* section : document.getSections())
        items.push_back({section->getId(), section->getName()});
    for (const desk::LevellingPoint* point : document.getPoints())
        items.push_back({point->getId(), point->getName()});
    return items;
}

} // namespace

void writeDeskLines(desk::Document& document, int count)
{
    const std::vector<Item> items = listItems(document);
    COrvel& protocol = document.getProtocol();
    DirectMonitor monitor(protocol, enums::Compile);
    protocol.ProtocolBegin(enums::Compile);
    for (int number = 0; number < count; ++number) {
        const Item& item = items[static_cast<std::size_t>(number) % items.size()];
        const std::wstring link = protocol.GetItemLink(item.id, item.name.toStdWString());
        const std::wstring text =
            link + L": невязка +" + std::to_wstring(number % 977) + L" мм, допуск ±20 мм";
        switch (sample::getKind(number)) {
        case COVMessage::Error:
            monitor.writeError(text);
            break;
        case COVMessage::Warning:
            monitor.writeWarning(text);
            break;
        default:
            monitor.writeMessage(text);
        }
    }
    protocol.ProtocolEnd(enums::Compile);
    document.checkProtocol(enums::Compile);
}

} // namespace orvel::bench
