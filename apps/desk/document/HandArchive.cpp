#include "apps/desk/document/HandArchive.h"

#include "apps/desk/document/ArchiveValues.h"
#include "apps/desk/document/LevellingPoint.h"
#include "apps/desk/document/LevellingSection.h"
#include "host/files/CFileException.h"
#include "levelling/GkfReader.h"

#include <algorithm>

namespace orvel::desk {

namespace handarchive {

namespace {

constexpr quint32 kMostProtocols = 1000;

/// All but the ends.
void serializeSection(CQtArchive& archive, levelling::Section& section)
{
    serializeValue(archive, section.difference);
    serializeValue(archive, section.distance);
    serializeValue(archive, section.stdev);
    serializeValue(archive, section.sigma);
    serializeValue(archive, section.stations);
    serializeValue(archive, section.readingDifference);
    serializeValue(archive, section.date);
    serializeValue(archive, section.note);
    serializeValue(archive, section.source);
    serializeValue(archive, section.line);
}

void serializeOriginal(CQtArchive& archive, std::optional<levelling::Section>& original)
{
    bool isThere = original.has_value();
    serializeValue(archive, isThere);
    if (!isThere)
        return;
    if (!original)
        original.emplace();
    serializeSection(archive, *original);
}

/// What an edit changes; the rest is as the point has it.
void serializeOriginal(CQtArchive& archive, std::optional<levelling::Point>& original,
                       const levelling::Point& point)
{
    bool isThere = original.has_value();
    serializeValue(archive, isThere);
    if (!isThere)
        return;
    if (!original)
        original = point;
    serializeValue(archive, original->height);
    serializeValue(archive, original->fixed);
    serializeValue(archive, original->observed);
}

void serializeHand(CQtArchive& archive, SectionHand& hand)
{
    serializeValue(archive, hand.isOff);
    serializeValue(archive, hand.offReason);
    serializeValue(archive, hand.isAdded);
    serializeOriginal(archive, hand.original);
}

void serializeDeleted(CQtArchive& archive, DeletedSection& deleted)
{
    serializeValue(archive, deleted.id);
    serializeValue(archive, deleted.name);
    serializeSection(archive, deleted.section);
}

void serializeNumber(CQtArchive& archive, quint64& number)
{
    auto stored = static_cast<qint64>(number);
    serializeValue(archive, stored);
    number = static_cast<quint64>(stored);
}

void serializeState(CQtArchive& archive, DocumentState& state)
{
    serializeNumber(archive, state.network);
    serializeNumber(archive, state.settings);
    serializeNumber(archive, state.tests);
}

/// Of the present state and of the results. The number between them was of use when states were counted.
void serializeStates(CQtArchive& archive, DocumentStates& states)
{
    quint64 unused = 0;
    serializeState(archive, states.current);
    serializeNumber(archive, unused);
    serializeNumber(archive, states.results);
}

void serializeProtocol(CQtArchive& archive, int& type, DocumentState& state)
{
    serializeValue(archive, type);
    serializeState(archive, state);
}

/// Saves how many there are and the index of each before it.
template<typename Item, typename SaveHand>
void saveHands(CQtArchive& archive, const std::vector<std::unique_ptr<Item>>& items, SaveHand saveHand)
{
    const auto count = std::count_if(items.begin(), items.end(),
                                     [](const auto& item) { return item->getHand() != nullptr; });
    archive << static_cast<quint32>(count);
    quint32 index = 0;
    for (const auto& item : items) {
        if (item->getHand()) {
            archive << index;
            saveHand(*item);
        }
        ++index;
    }
}

template<typename Item, typename LoadHand>
void loadHands(CQtArchive& archive, const std::vector<std::unique_ptr<Item>>& items, LoadHand loadHand)
{
    for (quint32 rest = loadCount(archive, items.size()); rest > 0; --rest) {
        quint32 index = 0;
        archive >> index;
        if (index >= items.size())
            throw qor::CFileException(qor::CFileException::CorruptFile, std::wstring());
        loadHand(*items[index]);
    }
}

void loadPointHand(CQtArchive& archive, LevellingPoint& item)
{
    PointHand hand;
    serializeValue(archive, hand.isAdded);
    serializeOriginal(archive, hand.original, item.getPoint());
    item.setPoint(item.getPoint(), PointHandPointer(new PointHand(hand)));
}

void savePointHand(CQtArchive& archive, const LevellingPoint& item)
{
    PointHand hand = *item.getHand();
    serializeValue(archive, hand.isAdded);
    serializeOriginal(archive, hand.original, item.getPoint());
}

} // namespace

void save(CQtArchive& archive, const Document::Content& content)
{
    saveHands(archive, content.points, [&](const LevellingPoint& item) { savePointHand(archive, item); });
    saveHands(archive, content.sections, [&](const LevellingSection& item) {
        SectionHand hand = *item.getHand();
        serializeHand(archive, hand);
    });
    archive << static_cast<quint32>(content.deletedSections.size());
    for (DeletedSection deleted : content.deletedSections)
        serializeDeleted(archive, deleted);
    DocumentStates states = content.states;
    serializeStates(archive, states);
    archive << static_cast<quint32>(states.protocols.size());
    for (const auto& [protocolType, computedWith] : states.protocols) {
        int type = protocolType;
        DocumentState state = computedWith;
        serializeProtocol(archive, type, state);
    }
}

void load(CQtArchive& archive, Document::Content& content)
{
    loadHands(archive, content.points, [&](LevellingPoint& item) { loadPointHand(archive, item); });
    loadHands(archive, content.sections, [&](LevellingSection& item) {
        SectionHand hand;
        serializeHand(archive, hand);
        item.setSection(item.getSection(), SectionHandPointer(new SectionHand(hand)));
    });
    // More than there can be items would not be believed either.
    for (quint32 rest = loadCount(archive, levelling::GkfReader::kMaxEntries); rest > 0; --rest)
        serializeDeleted(archive, content.deletedSections.emplace_back());
    serializeStates(archive, content.states);
    for (quint32 rest = loadCount(archive, kMostProtocols); rest > 0; --rest) {
        int type = 0;
        DocumentState state;
        serializeProtocol(archive, type, state);
        content.states.protocols[type] = state;
    }
}

} // namespace handarchive

} // namespace orvel::desk
