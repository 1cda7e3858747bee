#pragma once

#include "host/model/LongId.h"
#include "levelling/Network.h"

#include <QExplicitlySharedDataPointer>
#include <QSharedData>
#include <QString>

#include <optional>
#include <vector>

namespace orvel::desk {

/// What was done to a section by hand. Most sections have none of it, so that they keep a pointer only; it
/// never changes.
struct SectionHand : QSharedData
{
    bool isOff = false; ///< takes no part in any run
    QString offReason;
    bool isAdded = false; ///< no import brought it
    /// As it was imported, if it was changed; its ends are not kept.
    std::optional<levelling::Section> original;

    bool isEmpty() const { return !isOff && !isAdded && !original; }
};

/// The same of a point.
struct PointHand : QSharedData
{
    bool isAdded = false;
    std::optional<levelling::Point> original;

    bool isEmpty() const { return !isAdded && !original; }
};

/// Null for an item that nobody has touched.
using SectionHandPointer = QExplicitlySharedDataPointer<const SectionHand>;
using PointHandPointer = QExplicitlySharedDataPointer<const PointHand>;

/// An imported section that was deleted by hand.
struct DeletedSection
{
    LONGID id = 0;
    QString name;
    levelling::Section section; ///< as it was imported; its ends are not kept
};

/// Whether a section is measured alike: its value, its weight and what that comes from.
inline bool isSameMeasurement(const levelling::Section& a, const levelling::Section& b)
{
    return a.difference == b.difference && a.distance == b.distance && a.stdev == b.stdev &&
           a.sigma == b.sigma && a.stations == b.stations;
}

/// Whether a point has the same part in the network.
inline bool isSameRole(const levelling::Point& a, const levelling::Point& b)
{
    return a.height == b.height && a.fixed == b.fixed && a.observed == b.observed;
}

} // namespace orvel::desk
