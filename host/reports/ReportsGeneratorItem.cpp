#include "host/reports/ReportsGeneratorItem.h"

#include "host/app/Application.h"
#include "host/files/QtFile.h"

#include <QDesktopServices>
#include <QUrl>

namespace reports {

int ReportsGeneratorItem::getType() const
{
    return kReportsGeneratorType;
}

void ReportsGeneratorItem::registerReport(int reportType, ReportWriter html)
{
    reportWriters[reportType] = std::move(html);
}

std::vector<int> ReportsGeneratorItem::getReportTypes() const
{
    std::vector<int> types;
    types.reserve(reportWriters.size());
    for (const auto& [type, writer] : reportWriters)
        types.push_back(type);
    return types;
}

QString ReportsGeneratorItem::generateReport(int reportType) const
{
    const auto found = reportWriters.find(reportType);
    if (found == reportWriters.end())
        return {};
    const QByteArray html = found->second().toUtf8();

    const QString path = Application::getTmpFileName(QStringLiteral("report_%1.html"));
    QtFile file(path);
    file.open(QIODevice::WriteOnly);
    file.device()->write(html);
    file.close();
    if (Application* application = Application::instance())
        application->registerTmpFile(path);
    return path;
}

bool ReportsGeneratorItem::showReport(int reportType) const
{
    const QString path = generateReport(reportType);
    return !path.isEmpty() && QDesktopServices::openUrl(QUrl::fromLocalFile(path));
}

} // namespace reports
