#pragma once

#include "apps/desk/document/NetworkSnapshot.h"
#include "apps/desk/runs/ImportSource.h"
#include "host/process/IProcessMonitor.h"

#include <QString>

#include <functional>
#include <memory>

namespace orvel::desk {

/// Puts a network and a field book into the project and gives its snapshot; null if the run was stopped
/// before.
using NetworkTaker = std::function<std::shared_ptr<const NetworkSnapshot>(
    const levelling::Network& network, std::shared_ptr<const tacheometry::FieldBook> fieldBook)>;

/// Reads levelling networks from files, adds them in their order to a network, and has the project take it.
/// Every part of a file that was not used as it stands becomes a line that names the line number, and so does
/// what a file changes about points that are there already.
///
/// @param base  what the files are added to; an empty one for a network of them alone
/// @return why a file gave no network, as plain text; empty if all did or if the run was stopped
QString runImport(qor::IProcessMonitor& monitor, const std::vector<ImportSource>& sources,
                  const NetworkSnapshot& base, const NetworkTaker& takeNetwork);

} // namespace orvel::desk
