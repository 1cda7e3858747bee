#pragma once

#include "apps/desk/print/ReportPaper.h"
#include "apps/desk/reports/ReportContent.h"

#include <QString>

namespace orvel::desk {

/// Files of reports, whose suffix tells what they are: .html or .pdf.
namespace reportfile {

bool isKnown(const QString& path);
/// The suffixes with their dots, for a sentence.
QString listSuffixes();

/// The content of such a file; empty if the work was stopped.
QByteArray make(const ReportContent& report, const QString& path, const reportpaper::Progress& progress = {});

} // namespace reportfile

} // namespace orvel::desk
