#include "apps/desk/reports/DeskReports.h"

#include "Orvel/store/COrvel.h"
#include "apps/desk/Desk.h"
#include "apps/desk/document/DeskTypes.h"
#include "apps/desk/document/Document.h"
#include "apps/desk/reports/ReportHtml.h"
#include "apps/desk/reports/ReportMakers.h"
#include "host/enums/EnumData.h"
#include "host/process/BesideWindow.h"
#include "host/reports/ReportsGeneratorItem.h"

#include <algorithm>

namespace orvel::desk {

namespace deskreports {

namespace {

template<typename Condition>
std::optional<Report> findIf(const Condition& isMeant)
{
    const std::vector<Report> reports = getReports();
    const auto found = std::find_if(reports.begin(), reports.end(), isMeant);
    return found == reports.end() ? std::nullopt : std::optional(*found);
}

QString makePage(const Document& document, const Report& report, const PictureMaker& drawPicture)
{
    const auto make = prepare(document, report, drawPicture);
    QString page;
    performBesideWindow([&] { page = reporthtml::make(make()); });
    return page;
}

reports::ReportsGeneratorItem& getGenerator(Document& document)
{
    return dynamic_cast<reports::ReportsGeneratorItem&>(
        *document.getModel().getFirstItem(reports::kReportsGeneratorType));
}

void registerWriters(Document& document, const PictureMaker& drawPicture)
{
    for (const Report& report : getReports())
        getGenerator(document).registerReport(report.type, [&document, report, drawPicture] {
            return makePage(document, report, drawPicture);
        });
}

} // namespace

std::vector<Report> getReports()
{
    return {
        {kHeightCatalogue, enums::Adjust, true, true, QStringLiteral("catalogue"), "HeightCatalogue",
         Desk::tr("Каталог высот"), Desk::tr("Каталоги высот"), reportmakers::makeHeightCatalogue},
        {kResidualList, enums::Adjust, true, true, QStringLiteral("residuals"), "ResidualList",
         Desk::tr("Ведомость превышений и поправок"), Desk::tr("Ведомости превышений и поправок"),
         reportmakers::makeResidualList},
        {kLineList, enums::AutoChainTracingAnalysis, false, true, QStringLiteral("lines"), "LineList",
         Desk::tr("Ведомость ходов"), Desk::tr("Ведомости ходов"), reportmakers::makeLineList},
        {kSectionBook, enums::Compile, false, false, QStringLiteral("sections"), "SectionBook",
         Desk::tr("Ведомость секций"), Desk::tr("Ведомости секций"), reportmakers::makeSectionBook},
    };
}

std::optional<Report> find(int type)
{
    return findIf([type](const Report& report) { return report.type == type; });
}

std::optional<Report> findByName(const QString& name)
{
    return findIf([&name](const Report& report) { return report.name == name; });
}

std::map<int, std::vector<int>> getTypesByProtocol()
{
    std::map<int, std::vector<int>> types;
    for (const Report& report : getReports())
        types[report.protocolType].push_back(report.type);
    return types;
}

std::function<ReportContent()> prepare(const Document& document, const Report& report,
                                       const PictureMaker& drawPicture)
{
    const QByteArray picture = report.hasPicture && drawPicture ? drawPicture() : QByteArray();
    return [make = report.make, picture, input = ReportInput::gather(document, QDate::currentDate())] {
        ReportContent content = make(input);
        content.picture = picture;
        return content;
    };
}

void registerReports(Document& document)
{
    for (const Report& report : getReports())
        registerEnumData(EnumData(report.type, report.internalName, report.title.toStdString(),
                                  report.pluralTitle.toStdString()));
    registerWriters(document, nullptr);
    for (const auto& [protocolType, types] : getTypesByProtocol())
        document.getProtocol().addReportTypes(protocolType, types);
}

void registerPictures(Document& document, const PictureMaker& drawPicture)
{
    registerWriters(document, drawPicture);
}

} // namespace deskreports

} // namespace orvel::desk
