#pragma once

#include "levelling/LevelBook.h"

#include <functional>

class QIODevice;

namespace levelling {

/// Reads the lines of a digital level from GSI-8 and GSI-16.
///
/// A line begins at a word 41 with a question mark and its method (1 BF, 2 BFFB, 3 aBF, 4 aBFFB), and ends at
/// the next one or with the file. Used are the words 11 (point), 331 and 335 (readings back), 332 and 336
/// (fore), 333 (intermediate), 32 (distance) and 83 (height, which also ends a station). Readings that the
/// instrument has averaged (390, 391, 392), and its sums (571 to 574) need nothing else. What is not used is
/// told: words nobody can read each by its line, words of other meaning by their count.
namespace gsilevelreader {

/// @param device  is open for reading
/// @param isStopped  asked every few kilobytes and every few thousand stations; may be empty
LevelResult read(QIODevice& device, const LevelSettings& settings,
                 const std::function<bool()>& isStopped = {});

} // namespace gsilevelreader

} // namespace levelling
