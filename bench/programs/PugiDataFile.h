#pragma once

#include "bench/SampleMessages.h"

class QIODevice;

/// The data file through pugixml, parsed in place.
namespace orvel::bench::pugidata {

sample::MessageStore readDataFile(QIODevice& device);
void writeDataFile(const sample::MessageStore& store, QIODevice& device);

} // namespace orvel::bench::pugidata
