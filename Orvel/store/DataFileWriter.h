#pragma once

#include "Orvel/orvel_export.h"
#include "Orvel/store/COVMessage.h"

#include <map>
#include <vector>

class QIODevice;

namespace orvel::datafile {

/// Writes the messages, by protocol type, as a data file in UTF-8. Works in pieces: the memory that it needs
/// does not grow with the number of messages. A failed write shows in the device's error.
ORVEL_EXPORT void write(const std::map<int, std::vector<COVMessage>>& messages, QIODevice& device);

} // namespace orvel::datafile
