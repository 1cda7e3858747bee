#pragma once

#include "tacheometry/FieldBookReading.h"

#include <functional>

class QIODevice;

namespace tacheometry {

/// Reads M5 files of total stations.
///
/// The code of a point and its number stand in the columns that the settings of the file tell; a point is
/// called by its number. "S" is the code of the station, "A" that of a point that it is oriented by, measured
/// before the station is given ("KN STAT"). From the record of the orientation ("Om") on, the instrument
/// writes directions that are azimuths already. "th" and "ih" hold until they change; "Tv", "Tr" and "Tl" say
/// how far in front, to the right or to the left of the next point its target stands. Coordinates behind a
/// measurement of the same point are those that the instrument itself has computed.
namespace m5totalstation {

/// @param device  is open for reading
/// @param isStopped  asked every few kilobytes; may be empty
FieldBookReading read(QIODevice& device, const std::function<bool()>& isStopped = {});

} // namespace m5totalstation

} // namespace tacheometry
