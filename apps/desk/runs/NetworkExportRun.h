#pragma once

#include "apps/desk/document/NetworkSnapshot.h"
#include "host/process/IProcessMonitor.h"

#include <QString>

namespace orvel::desk {

/// Writes the network with its measurements as a gama-local file, and tells what that file cannot hold.
///
/// @param filePath  "-" is the standard output
/// @return why nothing was written, as plain text; empty if it was or if the run was stopped
QString runNetworkExport(qor::IProcessMonitor& monitor, const NetworkSnapshot& snapshot,
                         const QString& filePath);

} // namespace orvel::desk
