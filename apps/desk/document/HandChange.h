#pragma once

#include "apps/desk/document/HandState.h"

#include <QString>

namespace orvel::desk {

/// Something that was changed by hand against what was imported.
struct HandChange
{
    enum class Kind { PointChanged, PointAdded, SectionOff, SectionChanged, SectionAdded, SectionDeleted };

    Kind kind = Kind::SectionOff;
    LONGID id = 0; ///< of the item, which may be deleted
    QString name;
    QString reason; ///< why it was switched off; may be empty
    // As imported and as it is now, as far as they are there.
    levelling::Section sectionBefore;
    levelling::Section section;
    levelling::Point pointBefore;
    levelling::Point point;
};

namespace handchanges {

/// One line of plain text.
QString describe(const HandChange& change);
/// The same with something else for the item's name, as a link of a protocol.
/// @param escape  what other texts of the user go through
QString describe(const HandChange& change, const QString& itemName, QString (*escape)(const QString&));

} // namespace handchanges

} // namespace orvel::desk
