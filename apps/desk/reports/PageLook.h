#pragma once

#include <QString>

namespace orvel::desk {

/// What pages of protocols look like: the template that is laid beside the data when the program starts.
namespace pagelook {

/// What pages that are made now lack, as plain text; empty if they lack nothing.
QString describeLack();

} // namespace pagelook

} // namespace orvel::desk
