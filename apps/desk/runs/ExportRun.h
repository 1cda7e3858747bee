#pragma once

#include "host/model/LongId.h"
#include "host/process/IProcessMonitor.h"

#include <QString>

#include <optional>
#include <vector>

namespace orvel::desk {

/// A height to be exported.
struct ExportedHeight
{
    QString point;
    LONGID id = 0;
    std::optional<double> height; ///< m; none if the adjustment could not determine it
    double sigma = 0.0;           ///< mm
};

/// Writes adjusted heights as CSV (UTF-8) with the header "point,height_m,sigma_mm".
///
/// Returns why there is no file, as plain text; empty if there is one or if the run was stopped.
QString runExport(qor::IProcessMonitor& monitor, const std::vector<ExportedHeight>& heights,
                  const QString& filePath);

} // namespace orvel::desk
