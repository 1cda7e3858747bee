#include "apps/desk/print/ReportFile.h"

#include "apps/desk/reports/ReportHtml.h"

#include <QFileInfo>

namespace orvel::desk {

namespace reportfile {

namespace {

const QString kPage = QStringLiteral("html");
const QString kPaper = QStringLiteral("pdf");

QString getSuffix(const QString& path)
{
    return QFileInfo(path).suffix().toLower();
}

} // namespace

bool isKnown(const QString& path)
{
    const QString suffix = getSuffix(path);
    return suffix == kPage || suffix == kPaper;
}

QString listSuffixes()
{
    return QStringLiteral(".%1, .%2").arg(kPage, kPaper);
}

QByteArray make(const ReportContent& report, const QString& path, const reportpaper::Progress& progress)
{
    return getSuffix(path) == kPage ? reporthtml::make(report).toUtf8()
                                    : reportpaper::makePdf(report, progress);
}

} // namespace reportfile

} // namespace orvel::desk
