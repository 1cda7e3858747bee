#pragma once

#include "tacheometry/FieldBookReading.h"

#include <functional>

class QIODevice;

namespace tacheometry {

/// Reads GSI-8 and GSI-16 files of total stations: measurements (words 21, 22, 31, 32, with 87) and
/// coordinates (81 to 83).
///
/// A block with the coordinates of a station (84 to 86), its name (16) or the height of the instrument (88)
/// and no measurement sets the instrument up on its point (11). Where such words stand beside a measurement,
/// others begin another set-up; a station that has no name is called by the point of the file that has its
/// coordinates, or "S1" and so on. Coordinates beside a measurement are those that the instrument itself has
/// computed. The distances have the instrument's corrections for prism and air (51, 58, 59) already.
namespace gsitotalstation {

/// @param device  is open for reading
/// @param isStopped  asked every few kilobytes; may be empty
FieldBookReading read(QIODevice& device, const std::function<bool()>& isStopped = {});

} // namespace gsitotalstation

} // namespace tacheometry
