#pragma once

#include "host/model/LongId.h"

#include <QString>

namespace orvel::desk {

class Document;

namespace picture {

/// What the picture tells of a point or a section, as rich text with a line for each fact; empty if there is
/// no such item.
QString describeItem(const Document& document, LONGID id);

} // namespace picture

} // namespace orvel::desk
