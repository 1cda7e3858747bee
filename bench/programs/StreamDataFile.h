#pragma once

#include "bench/SampleMessages.h"

class QIODevice;

/// The data file through `QXmlStreamReader` and `QXmlStreamWriter`.
namespace orvel::bench::stream {

sample::MessageStore readDataFile(QIODevice& device);
void writeDataFile(const sample::MessageStore& store, QIODevice& device);

} // namespace orvel::bench::stream
