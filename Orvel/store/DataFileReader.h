#pragma once

#include "Orvel/orvel_export.h"
#include "Orvel/store/COVMessage.h"

#include <map>
#include <optional>
#include <vector>

class QIODevice;

namespace orvel::datafile {

/// By protocol type, in the order of the file.
using Messages = std::map<int, std::vector<COVMessage>>;

/// The messages of a data file in exactly the form that `write` gives it; nothing for any other file, also
/// for one that means the same. Of the file it has no more in memory than a piece.
ORVEL_EXPORT std::optional<Messages> readCanonical(QIODevice& device);

/// The messages of any XML file that holds a protocol; nothing when it does not parse, holds something else,
/// or nests elements a thousand deep. The device must be seekable. Never returns when an "li" is damaged.
std::optional<Messages> readXml(QIODevice& device);

} // namespace orvel::datafile
