#pragma once

#include "Orvel/store/COVMessage.h"
#include "host/model/LongId.h"

#include <QByteArray>
#include <QDateTime>
#include <QHash>

#include <map>
#include <optional>

class QIODevice;

namespace orvel::desk {

/// How many lines of which kind the protocols hold, by protocol type and by item.
struct ProtocolSummary
{
    struct Counts
    {
        int errors = 0;
        int warnings = 0;
        int messages = 0;
        int all = 0;     ///< with titles and whatever else there is
        QDateTime ended; ///< as the run's closing line says; invalid if none does
    };

    std::map<int, Counts> types;    ///< the types that have any line
    QHash<LONGID, int> linesOfItem; ///< count of the lines that mention the item
    /// The gravest kind of line that mentions the item: Error, Warning or Message. Items of other lines only
    /// have none.
    QHash<LONGID, COVMessage::MessageType> worstOfItem;

    std::optional<COVMessage::MessageType> findWorst(LONGID item) const;

    /// Counts the lines of a protocol's data file by its content; a damaged one counts up to the damage.
    static ProtocolSummary of(const QByteArray& dataContent);
    /// The same as it is read. Nothing for a file that has another form than the protocol gives it.
    static std::optional<ProtocolSummary> ofCanonical(QIODevice& dataFile);
};

} // namespace orvel::desk
