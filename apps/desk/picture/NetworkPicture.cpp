#include "apps/desk/picture/NetworkPicture.h"

#include "apps/desk/document/Document.h"

#include <QHash>
#include <QRectF>

#include <algorithm>

namespace orvel::desk::picture {

namespace {

Severity findSeverity(const ProtocolSummary& summary, LONGID id)
{
    const std::optional<COVMessage::MessageType> worst = summary.findWorst(id);
    if (worst == COVMessage::Error)
        return Severity::Error;
    return worst == COVMessage::Warning ? Severity::Warning : Severity::None;
}

PointKind findKind(const levelling::Point& point)
{
    if (point.fixed)
        return PointKind::Fixed;
    return point.observed ? PointKind::Observed : PointKind::Sought;
}

template<typename Item>
int findItem(const std::vector<Item>& items, LONGID id)
{
    const auto place =
        std::find_if(items.begin(), items.end(), [id](const Item& item) { return item.id == id; });
    return place == items.end() ? -1 : static_cast<int>(place - items.begin());
}

} // namespace

NetworkPicture NetworkPicture::make(const Document& document, const Layout& layout)
{
    NetworkPicture picture;
    picture.title = document.getProject().getName();
    picture.source = layout.source;
    const ProtocolSummary& summary = document.getSummary();
    const std::vector<LevellingPoint*> pointItems = document.getPoints();
    picture.points.reserve(pointItems.size());
    for (const LevellingPoint* item : pointItems)
        picture.points.push_back({item->getId(), item->getPoint().id, findKind(item->getPoint()),
                                  findSeverity(summary, item->getId()), layout.places[picture.points.size()],
                                  layout.source != PlaceSource::Mixed || item->getPosition().hasPlan()});
    const std::vector<LevellingSection*> sectionItems = document.getSections();
    picture.sections.reserve(sectionItems.size());
    for (const LevellingSection* item : sectionItems) {
        const levelling::Section& section = item->getSection();
        picture.sections.push_back({item->getId(), section.from, section.to,
                                    findSeverity(summary, item->getId()),
                                    layout.lanes[picture.sections.size()], item->isOff()});
    }
    picture.spacing = layout.spacing;
    return picture;
}

void NetworkPicture::setLoops(const std::vector<OverLimitLoop>& found)
{
    QHash<LONGID, int> indexOfPoint;
    for (std::size_t index = 0; index < points.size(); ++index)
        indexOfPoint.insert(points[index].id, static_cast<int>(index));
    loops.clear();
    for (const OverLimitLoop& loop : found) {
        PictureLoop drawn;
        drawn.text = loop.text;
        for (const LONGID id : loop.points) {
            const auto index = indexOfPoint.constFind(id);
            if (index != indexOfPoint.constEnd())
                drawn.points.push_back(*index);
        }
        // The network may have become another one since the loops were sought.
        if (drawn.points.size() == loop.points.size())
            loops.push_back(std::move(drawn));
    }
}

bool NetworkPicture::hasPlaces(const std::vector<QPointF>& places) const
{
    return std::equal(points.begin(), points.end(), places.begin(), places.end(),
                      [](const PicturePoint& point, const QPointF& place) { return point.place == place; });
}

QRectF NetworkPicture::getBox() const
{
    if (points.empty())
        return {0, 0, 1, 1};
    QPointF least = points.front().place;
    QPointF largest = least;
    for (const PicturePoint& point : points) {
        least = {std::min(least.x(), point.place.x()), std::min(least.y(), point.place.y())};
        largest = {std::max(largest.x(), point.place.x()), std::max(largest.y(), point.place.y())};
    }
    if (least == largest)
        return {least - QPointF(0.5, 0.5), QSizeF(1, 1)};
    return {least, largest};
}

int NetworkPicture::findPoint(LONGID id) const
{
    return findItem(points, id);
}

int NetworkPicture::findSection(LONGID id) const
{
    return findItem(sections, id);
}

} // namespace orvel::desk::picture
