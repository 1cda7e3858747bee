#pragma once

#include "apps/desk/document/NetworkSnapshot.h"
#include "apps/desk/runs/PlanExport.h"
#include "host/process/IProcessMonitor.h"

#include <QString>

namespace orvel::desk {

/// Writes a plan in one of the forms of planexport, and tells which points it does not hold.
///
/// @param toBytes        makes the file's content
/// @param withoutPlace   indices of the points that have no coordinates
/// @param filePath       "-" is the standard output
/// @return why nothing was written, as plain text; empty if it was or if the run was stopped
QString runPlanExport(qor::IProcessMonitor& monitor, const NetworkSnapshot& snapshot, const Plan& plan,
                      QByteArray (*toBytes)(const Plan&), const std::vector<int>& withoutPlace,
                      const QString& filePath);

} // namespace orvel::desk
