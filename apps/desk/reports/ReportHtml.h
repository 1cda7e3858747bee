#pragma once

#include "apps/desk/reports/ReportContent.h"

namespace orvel::desk {

namespace reporthtml {

/// The report as a whole HTML document that prints well.
QString make(const ReportContent& report);

} // namespace reporthtml

} // namespace orvel::desk
