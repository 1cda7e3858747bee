#pragma once

#include "apps/desk/reports/ReportContent.h"
#include "apps/desk/reports/ReportInput.h"

namespace orvel::desk {

/// What the reports say. Each may take long and can be called in any thread.
namespace reportmakers {

/// Heights of all points with their standard deviations.
ReportContent makeHeightCatalogue(const ReportInput& input);

/// Measured height differences with their residuals.
ReportContent makeResidualList(const ReportInput& input);

/// The lines of the network between benchmarks and nodes.
ReportContent makeLineList(const ReportInput& input);

/// All measured sections along the lines, forward and back.
ReportContent makeSectionBook(const ReportInput& input);

} // namespace reportmakers

} // namespace orvel::desk
