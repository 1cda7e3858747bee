#pragma once

#include "apps/desk/document/NetworkSnapshot.h"
#include "host/process/IProcessMonitor.h"

#include <QString>

#include <functional>
#include <memory>

namespace orvel::desk {

/// Puts a network into the project and gives its snapshot; null if the run was stopped before.
using NetworkTaker = std::function<std::shared_ptr<const NetworkSnapshot>(const levelling::Network& network)>;

/// Reads a levelling network from a file (.gkf) and has the project take it. Every part of the file that was
/// not used as it stands becomes a line that names the line number.
///
/// @param filePath  "-" is the standard input
/// @return why the file gave no network, as plain text; empty if it did or if the run was stopped
QString runImport(qor::IProcessMonitor& monitor, const QString& filePath, const NetworkTaker& takeNetwork);

} // namespace orvel::desk
