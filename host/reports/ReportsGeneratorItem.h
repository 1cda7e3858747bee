#pragma once

#include "host/host_export.h"
#include "host/model/CModelElement.h"

#include <functional>
#include <map>
#include <vector>

namespace reports {

/// Item type of ReportsGeneratorItem.
constexpr int kReportsGeneratorType = 0x2C071301;

/// The system item of a project that makes its reports.
class HOST_EXPORT ReportsGeneratorItem : public CModelElement
{
public:
    /// Gives a report as a whole HTML document.
    using ReportWriter = std::function<QString()>;

    int getType() const override;

    /// Offers a report type; an earlier writer of the type is replaced.
    void registerReport(int reportType, ReportWriter html);
    /// The types on offer, ascending.
    std::vector<int> getReportTypes() const;

    /// Writes the report into a temporary file of the application (UTF-8), removed when the application ends.
    /// Returns its path, empty for a type that is not on offer. Throws qor::CFileException, and whatever the
    /// writer throws.
    QString generateReport(int reportType) const;
    /// Generates the report and has the system open it. False if there is none or if it could not be opened.
    bool showReport(int reportType) const;

private:
    std::map<int, ReportWriter> reportWriters;
};

} // namespace reports
