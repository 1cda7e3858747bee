#include "apps/desk/document/NetworkChange.h"

#include "apps/desk/document/Document.h"
#include "apps/desk/document/LevellingPoint.h"
#include "apps/desk/document/LevellingSection.h"
#include "levelling/TemplateReader.h"

#include <QSet>

#include <algorithm>
#include <cmath>

namespace orvel::desk {

namespace networkchange {

namespace {

/// The hand state as its items keep it.
template<typename Hand>
QExplicitlySharedDataPointer<const Hand> share(const Hand& hand)
{
    return QExplicitlySharedDataPointer<const Hand>(hand.isEmpty() ? nullptr : new Hand(hand));
}

SectionHand getHand(const LevellingSection& item)
{
    return item.getHand() ? *item.getHand() : SectionHand();
}

/// Adds the edit that gives the item that section and that hand state.
void addEdit(NetworkChange& change, const LevellingSection& item, const levelling::Section& section,
             const SectionHand& hand)
{
    change.sectionEdits.push_back(
        {item.getId(), {item.getSection(), item.getHand()}, {section, share(hand)}});
}

/// Each once: an item has one state before a change.
std::vector<LONGID> withoutRepeated(const std::vector<LONGID>& ids)
{
    QSet<LONGID> known;
    std::vector<LONGID> distinct;
    for (const LONGID id : ids) {
        if (!known.contains(id))
            distinct.push_back(id);
        known.insert(id);
    }
    return distinct;
}

std::vector<const LevellingSection*> findSections(const Document& document, const std::vector<LONGID>& ids)
{
    std::vector<const LevellingSection*> sections;
    for (const LONGID id : withoutRepeated(ids)) {
        if (const LevellingSection* section = document.findSection(id))
            sections.push_back(section);
    }
    return sections;
}

int findPoint(const std::vector<LevellingPoint*>& points, const QString& name)
{
    const auto found = std::find_if(points.begin(), points.end(), [&name](const LevellingPoint* point) {
        return point->getPoint().id == name;
    });
    return found == points.end() ? -1 : static_cast<int>(found - points.begin());
}

/// The place of the point in the network that comes of the change, which adds it if there is none.
int addPoint(Document& document, const std::vector<LevellingPoint*>& points, const QString& name,
             NetworkChange& change)
{
    const int known = findPoint(points, name);
    if (known >= 0)
        return known;
    levelling::Point point;
    point.id = name;
    PointHand hand;
    hand.isAdded = true;
    const auto item = std::make_shared<LevellingPoint>(document.takeId(), point);
    item->setPoint(point, share(hand));
    const std::size_t place = points.size() + change.addedPoints.size();
    change.addedPoints.push_back({place, item});
    return static_cast<int>(place);
}

} // namespace

NetworkChange switchOff(const Document& document, const std::vector<LONGID>& ids, const QString& reason)
{
    NetworkChange change;
    for (const LevellingSection* item : findSections(document, ids)) {
        if (item->isOff() && item->getOffReason() == reason)
            continue;
        SectionHand hand = getHand(*item);
        hand.isOff = true;
        hand.offReason = reason;
        addEdit(change, *item, item->getSection(), hand);
    }
    return change;
}

NetworkChange switchOn(const Document& document, const std::vector<LONGID>& ids)
{
    NetworkChange change;
    for (const LevellingSection* item : findSections(document, ids)) {
        if (!item->isOff())
            continue;
        SectionHand hand = getHand(*item);
        hand.isOff = false;
        hand.offReason.clear();
        addEdit(change, *item, item->getSection(), hand);
    }
    return change;
}

NetworkChange changeSections(const Document& document, const std::vector<LONGID>& ids,
                             const std::function<void(levelling::Section&)>& changeSection)
{
    NetworkChange change;
    for (const LevellingSection* item : findSections(document, ids)) {
        levelling::Section section = item->getSection();
        changeSection(section);
        if (isSameMeasurement(section, item->getSection()))
            continue;
        SectionHand hand = getHand(*item);
        if (!hand.isAdded && !hand.original) {
            hand.original = item->getSection();
            hand.original->from = 0;
            hand.original->to = 0;
        }
        if (hand.original && isSameMeasurement(*hand.original, section))
            hand.original.reset();
        addEdit(change, *item, section, hand);
    }
    return change;
}

NetworkChange changePoints(const Document& document, const std::vector<LONGID>& ids,
                           const std::function<void(levelling::Point&)>& changePoint)
{
    NetworkChange change;
    for (const LONGID id : withoutRepeated(ids)) {
        const LevellingPoint* item = document.findPoint(id);
        if (!item)
            continue;
        levelling::Point point = item->getPoint();
        changePoint(point);
        if (isSameRole(point, item->getPoint()))
            continue;
        PointHand hand = item->getHand() ? *item->getHand() : PointHand();
        if (!hand.isAdded && !hand.original)
            hand.original = item->getPoint();
        if (hand.original && isSameRole(*hand.original, point))
            hand.original.reset();
        change.pointEdits.push_back({id, {item->getPoint(), item->getHand()}, {point, share(hand)}});
    }
    return change;
}

NetworkChange addSection(Document& document, const NewSection& added)
{
    NetworkChange change;
    const std::vector<LevellingPoint*> points = document.getPoints();
    levelling::Section section;
    section.from = addPoint(document, points, added.from, change);
    section.to = addPoint(document, points, added.to, change);
    section.difference = added.difference;
    section.distance = added.distance;
    section.stations = added.stations;
    section.stdev = added.sigma;
    section.sigma = levelling::TemplateReader::findSigma(section, document.getParameters().sigmaApriori);
    const std::vector<LevellingSection*> sections = document.getSections();
    QSet<QString> names;
    for (const LevellingSection* item : sections) {
        if (item->getName().startsWith(added.from))
            names.insert(item->getName());
    }
    SectionHand hand;
    hand.isAdded = true;
    const auto item = std::make_shared<LevellingSection>(
        document.takeId(), section, NetworkItems::makeSectionName(added.from, added.to, names));
    item->setSection(section, share(hand));
    change.addedSections.push_back({sections.size(), item});
    return change;
}

NetworkChange deleteSections(const Document& document, const std::vector<LONGID>& ids)
{
    NetworkChange change;
    const QSet<LONGID> deleted(ids.begin(), ids.end());
    const std::vector<LevellingPoint*> points = document.getPoints();
    std::vector<bool> isUsed(points.size(), false);
    std::vector<bool> isLeft(points.size(), false);
    std::size_t place = 0;
    for (const LevellingSection* item : document.getSections()) {
        const bool isDeleted = deleted.contains(item->getId());
        std::vector<bool>& ends = isDeleted ? isLeft : isUsed;
        ends[static_cast<std::size_t>(item->getSection().from)] = true;
        ends[static_cast<std::size_t>(item->getSection().to)] = true;
        if (isDeleted)
            change.removedSections.push_back({place, std::make_shared<LevellingSection>(*item)});
        ++place;
    }
    for (std::size_t i = 0; i < points.size(); ++i) {
        if (isLeft[i] && !isUsed[i] && points[i]->isAddedByHand())
            change.removedPoints.push_back({i, std::make_shared<LevellingPoint>(*points[i])});
    }
    return change;
}

void setSigma(levelling::Section& section, double sigma)
{
    section.stdev = sigma;
    section.sigma = sigma;
}

void setDistance(levelling::Section& section, double distance)
{
    if (!section.stdev && section.distance)
        section.sigma *= std::sqrt(distance / *section.distance);
    section.distance = distance;
}

void setStations(levelling::Section& section, int stations)
{
    if (!section.stdev && !section.distance && section.stations)
        section.sigma *= std::sqrt(static_cast<double>(stations) / *section.stations);
    section.stations = stations;
}

} // namespace networkchange

} // namespace orvel::desk
