#pragma once

#include "bench/SampleMessages.h"

class QIODevice;

/// The data file through pugixml, parsed in place.
namespace pugi_data {

sample::MessageStore readDataFile(QIODevice& device);
void writeDataFile(const sample::MessageStore& store, QIODevice& device);

} // namespace pugi_data
