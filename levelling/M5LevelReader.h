#pragma once

#include "levelling/LevelBook.h"

#include <functional>

class QIODevice;

namespace levelling {

/// Reads the lines of a digital level from M5, and from REC_E, which has the same records without columns.
///
/// A line begins with the text "Start-Line" and its method, goes on at "Cont-Line" and ends with "End-Line".
/// Used are Rb, Rf and Rz (in German files Lr, Lv and Lz: readings back, fore and intermediate), HD (E:
/// distance) and Z (height, which also ends a station). A record with "#####" or the mark of a fault is not
/// used; "Measurement repeated" and "Station repeated" take back what stands before them. Sums of a line (Sh,
/// dz, Db, Df, Sr, Sv) need nothing else. Written by the public descriptions of the formats.
namespace m5levelreader {

/// @param device  is open for reading
/// @param isStopped  asked every few kilobytes and every few thousand stations; may be empty
LevelResult readM5(QIODevice& device, const LevelSettings& settings,
                   const std::function<bool()>& isStopped = {});
LevelResult readRec(QIODevice& device, const LevelSettings& settings,
                    const std::function<bool()>& isStopped = {});

} // namespace m5levelreader

} // namespace levelling
