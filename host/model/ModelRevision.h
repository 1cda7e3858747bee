#pragma once

#include "host/host_export.h"

#include <QtGlobal>

/// A number that grows whenever something has changed, in any project, that others may have taken over: which
/// items there are, their ids and types, the names of projects, the records of enumerations. Who keeps
/// something that was made of these keeps the number, too, and knows by it whether that is still right.
///
/// One number serves all projects: to take something over anew is cheap, and a change rare. In any thread.
namespace modelrevision {

HOST_EXPORT quint64 get(); ///< The number of the newest change.
/// To be called when the change is made, before anybody is told of it.
HOST_EXPORT void advance();

} // namespace modelrevision
