#pragma once

class QIODevice;

namespace orvel::datafile {

/// Whether elements of the XML file are nested deeper than `limit`; the root has the depth 1. Reads from
/// where the device stands, with the parser that the DOM uses, as far as that one gets.
bool isDeeperThan(int limit, QIODevice& device);

} // namespace orvel::datafile
