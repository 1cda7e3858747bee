#pragma once

#include "apps/desk/document/HandState.h"

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace orvel::desk {

class Document;
class LevellingPoint;
class LevellingSection;

/// A change of the network by hand, to be made and to be taken back.
///
/// Holds the states before and after, by the items' ids, and the items that come or go with their places.
/// Sections name their ends by the indices that points have at that time: a change fits the network that it
/// was made for, and the one that comes of it.
struct NetworkChange
{
    struct SectionState
    {
        levelling::Section section;
        SectionHandPointer hand;
    };

    struct PointState
    {
        levelling::Point point;
        PointHandPointer hand;
    };

    template<typename State>
    struct Edit
    {
        LONGID id = 0;
        State before;
        State after;
    };

    template<typename Item>
    struct Placed
    {
        std::size_t place = 0; ///< index in the network that has it
        std::shared_ptr<const Item> item;
    };

    std::vector<Edit<PointState>> pointEdits;
    std::vector<Edit<SectionState>> sectionEdits;
    // By their places.
    std::vector<Placed<LevellingPoint>> removedPoints;
    std::vector<Placed<LevellingPoint>> addedPoints;
    std::vector<Placed<LevellingSection>> removedSections;
    std::vector<Placed<LevellingSection>> addedSections;

    bool isEmpty() const { return pointEdits.empty() && sectionEdits.empty() && !movesRows(); }
    /// Whether items come or go.
    bool movesRows() const
    {
        return !removedPoints.empty() || !addedPoints.empty() || !removedSections.empty() ||
               !addedSections.empty();
    }
};

/// Makes changes of a document's network; they are empty where there is nothing to be changed.
namespace networkchange {

/// A measurement to be added.
struct NewSection
{
    QString from; ///< name of a point; a new one comes into the network
    QString to;
    double difference = 0.0;        ///< m
    std::optional<double> distance; ///< km
    std::optional<int> stations;
    std::optional<double> sigma; ///< mm; if nobody has told it, it follows from the length or the stations
};

/// Switches the sections among the items off, for that reason.
NetworkChange switchOff(const Document& document, const std::vector<LONGID>& ids, const QString& reason);
NetworkChange switchOn(const Document& document, const std::vector<LONGID>& ids);
/// Changes the sections among the items; their ends must stay.
NetworkChange changeSections(const Document& document, const std::vector<LONGID>& ids,
                             const std::function<void(levelling::Section&)>& change);
/// Changes the points among the items; their names must stay.
NetworkChange changePoints(const Document& document, const std::vector<LONGID>& ids,
                           const std::function<void(levelling::Point&)>& change);
NetworkChange addSection(Document& document, const NewSection& added);
/// Deletes the sections among the items, and the points that were added by hand and have no other.
NetworkChange deleteSections(const Document& document, const std::vector<LONGID>& ids);

/// Gives a section that standard deviation, mm.
void setSigma(levelling::Section& section, double sigma);
/// Gives a section that length, km. A standard deviation that comes of the length follows it.
void setDistance(levelling::Section& section, double distance);
/// Gives a section so many stations. A standard deviation that comes of them follows.
void setStations(levelling::Section& section, int stations);

} // namespace networkchange

} // namespace orvel::desk
