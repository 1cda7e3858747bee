#pragma once

#include "Orvel/orvel_export.h"
#include "Orvel/store/COVMessage.h"

#include <functional>
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

/// Shows the messages of such a file one by one, and keeps none. False when the file turns out to be no such
/// one; what was shown before that is not to be relied on.
ORVEL_EXPORT bool visitCanonical(QIODevice& device, const std::function<void(const COVMessage&)>& visit);

/// The messages of any XML file that holds a protocol; nothing when it does not parse, holds something else,
/// or nests elements a thousand deep. The device must be seekable. Never returns when an "li" is damaged.
std::optional<Messages> readXml(QIODevice& device);

} // namespace orvel::datafile
