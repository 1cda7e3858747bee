#pragma once

#include "host/model/LongId.h"
#include "host/process/IProcessMonitor.h"
#include "tacheometry/FieldBook.h"

#include <QString>

#include <optional>
#include <vector>

namespace orvel::desk {

/// A point whose height, or coordinates, are to be exported.
struct ExportedHeight
{
    QString point;
    LONGID id = 0;
    tacheometry::Position position; ///< what of it is known
    std::optional<double> sigma;    ///< of an adjusted height, mm

    bool isKnown() const { return position.height || position.hasPlan(); }
};

/// Writes adjusted heights as CSV (UTF-8) with the header "point,height_m,sigma_mm"; where some point has
/// coordinates, with "point,x_m,y_m,height_m,sigma_mm".
///
/// @param wasAdjusted  whether an adjustment has run: it decides what is said when there are no heights
/// @param filePath     "-" is the standard output
/// @return why nothing was written, as plain text; empty if it was or if the run was stopped
QString runExport(qor::IProcessMonitor& monitor, const std::vector<ExportedHeight>& heights, bool wasAdjusted,
                  const QString& filePath);

} // namespace orvel::desk
