#pragma once

#include "apps/desk/reports/ReportContent.h"
#include "apps/desk/reports/ReportInput.h"
#include "levelling/Adjustment.h"

namespace orvel::desk {

/// What several reports say.
namespace reporttexts {

/// What stands where there is no value.
QString none();

/// The adjustment that the results come from; none if they are outdated.
levelling::Adjustment findAdjustment(const ReportInput& input);

/// What is to be read first where outdated results are shown.
QString warnOfOldResults();

/// How a section that is switched off is judged.
QString describeOff(const ReportInput::Section& section);

/// A report with its general data: date, project, network, class.
ReportContent begin(const ReportInput& input, const QString& title);

/// Adds what the results of an adjustment stand on: standard deviations of unit weight and the tests.
void addAdjustment(ReportContent& report, const ReportInput& input, const levelling::Adjustment& adjustment);

/// Adds what stands behind everything else: what was changed by hand.
void finish(ReportContent& report, const ReportInput& input);

} // namespace reporttexts

} // namespace orvel::desk
