#pragma once

#include "apps/desk/document/NetworkSnapshot.h"
#include "host/process/IProcessMonitor.h"
#include "tacheometry/Computation.h"

#include <QHash>
#include <QString>

namespace orvel::desk {

class WorstLine;

/// What a computation of tacheometry gave.
struct TacheometryOutcome
{
    tacheometry::Computation computation;
    /// Why it has no points, as plain text; empty if it has or if the run was stopped.
    QString failure;
};

/// Computes the points of the field book and writes what is over a limit, the largest excess first, then the
/// set-ups and the points.
///
/// @param given  what is known of points, by name
/// @param worst  gets the line farthest over its limit
TacheometryOutcome runTacheometry(qor::IProcessMonitor& monitor, const NetworkSnapshot& snapshot,
                                  const QHash<QString, tacheometry::Position>& given,
                                  WorstLine* worst = nullptr);

} // namespace orvel::desk
