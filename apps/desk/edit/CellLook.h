#pragma once

#include <QVariant>

namespace orvel::desk {

/// How cells of the item table look that are not as usual; each look goes with a word elsewhere.
namespace celllook {

/// The cell's data for a role of its look; invalid for a usual one.
/// @param isOff       of an item that is switched off: grey and struck out
/// @param isOutdated  a result of another state of the network: grey and slanted
QVariant present(int role, bool isOff, bool isOutdated);

} // namespace celllook

} // namespace orvel::desk
