#pragma once

#include "Orvel/store/COVMessage.h"

#include <map>
#include <vector>

class QIODevice;

/// The data file written through a DOM document.
namespace reference {

using MessageStore = std::map<int, std::vector<COVMessage>>;

void writeDataFile(const MessageStore& messages, QIODevice& device);

} // namespace reference
