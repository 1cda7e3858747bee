#pragma once

#include "apps/desk/reports/ReportInput.h"

namespace orvel::test {

/// A levelling line between two benchmarks with a loop and a spur, measured there and back, adjusted; on the
/// 12th of May 2026. One section is 40 mm wrong.
desk::ReportInput makeReportNetwork();

/// A line of so many sections between two benchmarks.
desk::ReportInput makeLongLine(int sectionCount);

} // namespace orvel::test
