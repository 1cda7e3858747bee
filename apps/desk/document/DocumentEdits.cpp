// What is changed by hand, and what belongs to which state of the network.

#include "Orvel/store/ProtocolTypes.h"
#include "apps/desk/document/DeskTypes.h"
#include "apps/desk/document/Document.h"
#include "apps/desk/document/LevellingPoint.h"
#include "apps/desk/document/LevellingSection.h"
#include "apps/desk/document/StateDigest.h"

#include <QUndoCommand>
#include <QUndoStack>

#include <algorithm>
#include <utility>

namespace orvel::desk {

namespace {

// Among the types of protocols that are outdated.
constexpr int kResults = 0;

/// Whether a run of that type computes with points and sections; the others tell of files.
bool dependsOnNetwork(int protocolType)
{
    return protocolType != enums::Import && protocolType != enums::ImportTemplate &&
           protocolType != enums::Export;
}

/// Whether its lines depend on the class as well.
bool dependsOnSettings(int protocolType)
{
    return protocolType == enums::Compile || protocolType == enums::FixedPointsAnalysis ||
           protocolType == enums::AutoChainTracingAnalysis;
}

/// Whether its lines depend on no class, but on the level of the tests.
bool dependsOnTests(int protocolType)
{
    return protocolType == enums::Adjust || protocolType == enums::L1Analysis;
}

/// Copies of the items without the removed ones and with the added ones in their places.
/// @param places  gets the new index of every item; -1 for one that is removed
template<typename Item>
std::vector<std::unique_ptr<Item>>
compose(const std::vector<Item*>& items, const std::vector<NetworkChange::Placed<Item>>& removed,
        const std::vector<NetworkChange::Placed<Item>>& added, std::vector<int>& places)
{
    std::vector<std::unique_ptr<Item>> composed;
    composed.reserve(items.size() + added.size());
    auto nextAdded = added.begin();
    const auto takeAdded = [&] {
        for (; nextAdded != added.end() && nextAdded->place == composed.size(); ++nextAdded)
            composed.push_back(std::make_unique<Item>(*nextAdded->item));
    };
    auto nextRemoved = removed.begin();
    for (std::size_t i = 0; i < items.size(); ++i) {
        if (nextRemoved != removed.end() && nextRemoved->place == i) {
            ++nextRemoved;
            places.push_back(-1);
            continue;
        }
        takeAdded();
        places.push_back(static_cast<int>(composed.size()));
        composed.push_back(std::make_unique<Item>(*items[i]));
    }
    takeAdded();
    return composed;
}

void renumber(std::vector<int>& points, const std::vector<int>& places)
{
    for (int& point : points)
        point = places[static_cast<std::size_t>(point)];
}

/// Has sections name their ends by the points' new places.
/// @param places  of the sections that are to be changed; negative ones are left out
void renumberEnds(const std::vector<std::unique_ptr<LevellingSection>>& sections,
                  const std::vector<int>& places, const std::vector<int>& pointPlaces)
{
    for (const int place : places) {
        if (place < 0)
            continue;
        LevellingSection& item = *sections[static_cast<std::size_t>(place)];
        levelling::Section section = item.getSection();
        section.from = pointPlaces[static_cast<std::size_t>(section.from)];
        section.to = pointPlaces[static_cast<std::size_t>(section.to)];
        item.setSection(section, item.getHand());
    }
}

DeletedSection makeDeleted(const LevellingSection& item)
{
    DeletedSection deleted{item.getId(), item.getName(), item.getOriginal().value_or(item.getSection())};
    deleted.section.from = 0;
    deleted.section.to = 0;
    return deleted;
}

/// Imported sections that the change removes are remembered, and forgotten when it is taken back.
void updateDeleted(std::vector<DeletedSection>& deleted, const NetworkChange& change, bool isForward)
{
    for (const auto& placed : change.removedSections) {
        if (placed.item->isAddedByHand())
            continue;
        if (isForward)
            deleted.push_back(makeDeleted(*placed.item));
        else
            deleted.pop_back();
    }
}

HandChange makeHandChange(HandChange::Kind kind, const LevellingSection& item)
{
    HandChange change;
    change.kind = kind;
    change.id = item.getId();
    change.name = item.getName();
    change.reason = item.getOffReason();
    change.section = item.getSection();
    change.sectionBefore = item.getOriginal().value_or(item.getSection());
    return change;
}

void addHandChanges(std::vector<HandChange>& changes, const LevellingPoint& item)
{
    if (!item.getHand())
        return;
    HandChange change;
    change.kind = item.isAddedByHand() ? HandChange::Kind::PointAdded : HandChange::Kind::PointChanged;
    change.id = item.getId();
    change.name = item.getName();
    change.point = item.getPoint();
    change.pointBefore = item.getOriginal().value_or(item.getPoint());
    changes.push_back(change);
}

void addHandChanges(std::vector<HandChange>& changes, const LevellingSection& item)
{
    if (item.isAddedByHand())
        changes.push_back(makeHandChange(HandChange::Kind::SectionAdded, item));
    if (item.getOriginal())
        changes.push_back(makeHandChange(HandChange::Kind::SectionChanged, item));
    if (item.isOff())
        changes.push_back(makeHandChange(HandChange::Kind::SectionOff, item));
}

} // namespace

/// A change of points and sections.
class NetworkCommand : public QUndoCommand
{
public:
    NetworkCommand(Document& openDocument, const QString& text, NetworkChange networkChange)
        : QUndoCommand(text)
        , document(openDocument)
        , change(std::move(networkChange))
    {}

    void redo() override { document.performChange(change, true); }
    void undo() override { document.performChange(change, false); }

private:
    Document& document;
    const NetworkChange change;
};

bool Document::applyChange(const QString& text, NetworkChange change)
{
    if (editsRefused || change.isEmpty())
        return false;
    undoStack->push(new NetworkCommand(*this, text, std::move(change)));
    return true;
}

void Document::performChange(const NetworkChange& change, bool isForward)
{
    snapshot.reset();
    wholeSnapshot.reset();
    offCount.reset();
    const quint64 difference = statedigest::of(change);
    states.current.network += isForward ? difference : 0 - difference;
    if (change.movesRows())
        moveRows(change, isForward);
    else
        editItems(change, isForward);
    tellOutdated();
}

void Document::editItems(const NetworkChange& change, bool isForward)
{
    std::vector<LONGID> ids;
    for (const auto& edit : change.pointEdits) {
        const NetworkChange::PointState& state = isForward ? edit.after : edit.before;
        static_cast<LevellingPoint*>(model.findItemAnywhere(edit.id))->setPoint(state.point, state.hand);
        ids.push_back(edit.id);
    }
    for (const auto& edit : change.sectionEdits) {
        const NetworkChange::SectionState& state = isForward ? edit.after : edit.before;
        static_cast<LevellingSection*>(sectionManager->findItem(edit.id))
            ->setSection(state.section, state.hand);
        ids.push_back(edit.id);
    }
    Q_EMIT itemsEdited(ids);
}

void Document::moveRows(const NetworkChange& change, bool isForward)
{
    NetworkItems items;
    items.head = head;
    items.fieldBook = fieldBook;
    items.snapshot.reset();
    items.nextId = nextId;
    items.state = states.current.network;
    const auto& removedPoints = isForward ? change.removedPoints : change.addedPoints;
    const auto& addedPoints = isForward ? change.addedPoints : change.removedPoints;
    std::vector<int> pointPlaces;
    if (removedPoints.empty() && addedPoints.empty()) {
        items.points.reset();
    } else {
        for (auto& point : compose(getPoints(), removedPoints, addedPoints, pointPlaces))
            items.points->addItem(std::move(point));
        for (levelling::ObservedHeights& group : items.head.observedHeights)
            renumber(group.points, pointPlaces);
    }
    std::vector<int> sectionPlaces;
    auto sections = compose(getSections(), isForward ? change.removedSections : change.addedSections,
                            isForward ? change.addedSections : change.removedSections, sectionPlaces);
    // Those that stay name their ends by the places before.
    if (!pointPlaces.empty())
        renumberEnds(sections, sectionPlaces, pointPlaces);
    for (auto& section : sections)
        items.sections->addItem(std::move(section));
    items.deletedSections = deletedSections;
    updateDeleted(items.deletedSections, change, isForward);
    // No protocols go with it.
    clearedTypes.clear();
    putItems(items);
}

std::shared_ptr<const NetworkSnapshot> Document::shareSnapshot() const
{
    if (snapshot)
        return snapshot;
    snapshot =
        countOff() > 0 ? std::make_shared<const NetworkSnapshot>(makeSnapshot(false)) : shareWholeSnapshot();
    return snapshot;
}

std::shared_ptr<const NetworkSnapshot> Document::shareWholeSnapshot() const
{
    if (!wholeSnapshot)
        wholeSnapshot = std::make_shared<const NetworkSnapshot>(makeSnapshot(true));
    return wholeSnapshot;
}

NetworkSnapshot Document::makeSnapshot(bool isWhole) const
{
    NetworkSnapshot made;
    made.network = head;
    made.fieldBook = fieldBook;
    for (const LevellingPoint* point : getPoints()) {
        made.network.points.push_back(point->getPoint());
        made.pointIds.push_back(point->getId());
    }
    for (const LevellingSection* section : getSections()) {
        if (section->isOff() && !isWhole)
            continue;
        made.network.sections.push_back(section->getSection());
        made.sectionIds.push_back(section->getId());
        made.sectionNames.append(section->getName());
    }
    return made;
}

HandStates Document::getHandStates() const
{
    HandStates hands;
    for (const LevellingPoint* point : getPoints()) {
        if (point->getHand())
            hands.points.insert(point->getId(), point->getHand());
    }
    for (const LevellingSection* section : getSections()) {
        if (section->getHand())
            hands.sections.insert(section->getId(), section->getHand());
    }
    hands.deletedSections = deletedSections;
    return hands;
}

std::vector<HandChange> Document::getHandChanges() const
{
    std::vector<HandChange> changes;
    for (const LevellingPoint* point : getPoints())
        addHandChanges(changes, *point);
    for (const LevellingSection* section : getSections())
        addHandChanges(changes, *section);
    for (const DeletedSection& deleted : deletedSections) {
        HandChange change;
        change.kind = HandChange::Kind::SectionDeleted;
        change.id = deleted.id;
        change.name = deleted.name;
        change.sectionBefore = deleted.section;
        changes.push_back(change);
    }
    return changes;
}

bool Document::areResultsOutdated() const
{
    return toldOutdated.count(kResults) != 0;
}

bool Document::isProtocolOutdated(int protocolType) const
{
    if (!dependsOnNetwork(protocolType) || summary.types.count(protocolType) == 0)
        return false;
    const auto found = states.protocols.find(protocolType);
    if (found == states.protocols.end())
        return false;
    const DocumentState& state = found->second;
    return state.network != states.current.network ||
           (dependsOnSettings(protocolType) && state.settings != states.current.settings) ||
           (dependsOnTests(protocolType) && state.tests != states.current.tests);
}

std::vector<int> Document::getOutdatedTypes() const
{
    std::vector<int> types = getProtocolTypes();
    types.erase(
        std::remove_if(types.begin(), types.end(), [this](int type) { return !isProtocolOutdated(type); }),
        types.end());
    return types;
}

void Document::tellOutdated()
{
    const std::vector<int> types = getOutdatedTypes();
    std::set<int> outdated(types.begin(), types.end());
    if (states.results != states.current.network && hasResults())
        outdated.insert(kResults);
    if (outdated == toldOutdated)
        return;
    toldOutdated = outdated;
    Q_EMIT outdatedChanged();
}

} // namespace orvel::desk
