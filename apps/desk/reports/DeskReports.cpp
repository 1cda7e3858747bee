#include "apps/desk/reports/DeskReports.h"

#include "Orvel/store/COrvel.h"
#include "apps/desk/Desk.h"
#include "apps/desk/document/DeskTypes.h"
#include "apps/desk/document/Document.h"
#include "apps/desk/document/LevellingPoint.h"
#include "apps/desk/document/LevellingSection.h"
#include "apps/desk/reports/ReportPage.h"
#include "apps/desk/runs/NumberTexts.h"
#include "host/enums/EnumData.h"
#include "host/reports/ReportsGeneratorItem.h"

namespace orvel::desk {

namespace deskreports {

namespace {

ReportPage beginPage(const Document& document, const QString& title)
{
    ReportPage page(title);
    page.addLine(Desk::tr("Проект: %1").arg(document.getProject().getName()));
    const QString description = document.getDescription().simplified();
    if (!description.isEmpty())
        page.addLine(description);
    return page;
}

QString describeSigmas(const Document& document)
{
    const levelling::Parameters& parameters = document.getParameters();
    const QString apriori = numbers::significant(parameters.sigmaApriori, 5);
    return parameters.sigmaAct == levelling::SigmaAct::Apriori
               ? Desk::tr("СКО вычислены по априорной СКО единицы веса %1 мм на 1 км хода").arg(apriori)
               : Desk::tr("СКО вычислены по апостериорной СКО единицы веса; априорная %1 мм на 1 км хода")
                     .arg(apriori);
}

QString optionalNumber(const std::optional<double>& value, QString (*toText)(double))
{
    return value ? toText(*value) : QStringLiteral("—");
}

/// Heights of all points with their standard deviations.
QString makeHeightCatalogue(const Document& document)
{
    ReportPage page = beginPage(document, Desk::tr("Каталог высот"));
    page.addLine(describeSigmas(document));
    page.setColumns({Desk::tr("Пункт"), Desk::tr("Вид"), Desk::tr("Высота, м"), Desk::tr("СКО, мм")}, 2);
    for (const LevellingPoint* point : document.getPoints()) {
        const auto& result = point->getResult();
        const bool isFixed = point->getPoint().fixed;
        page.addRow({point->getName(), isFixed ? Desk::tr("исходный репер") : Desk::tr("определяемый пункт"),
                     result ? numbers::height(result->height) : Desk::tr("не определена"),
                     result && !isFixed ? numbers::sigma(result->sigma) : QStringLiteral("—")});
    }
    return page.toHtml();
}

/// Measured height differences with their residuals.
QString makeResidualList(const Document& document)
{
    ReportPage page = beginPage(document, Desk::tr("Ведомость превышений и поправок"));
    page.addLine(Desk::tr("Поправка v = уравненное превышение − измеренное превышение"));
    page.setColumns({Desk::tr("Секция"), Desk::tr("Длина, км"), Desk::tr("СКО, мм"),
                     Desk::tr("Измеренное превышение, м"), Desk::tr("Поправка v, мм"),
                     Desk::tr("Уравненное превышение, м"), Desk::tr("Нормированная поправка")},
                    1);
    for (const LevellingSection* section : document.getSections()) {
        const levelling::Section& measured = section->getSection();
        std::optional<double> residual;
        std::optional<double> adjusted;
        std::optional<double> normalised;
        if (const auto& result = section->getResult()) {
            residual = result->residual;
            adjusted = measured.difference + result->residual / 1000.0;
            normalised = result->normalisedResidual;
        }
        page.addRow({section->getName(), optionalNumber(measured.distance, numbers::length),
                     numbers::sigma(measured.sigma), numbers::height(measured.difference),
                     optionalNumber(residual, numbers::misclosure), optionalNumber(adjusted, numbers::height),
                     optionalNumber(normalised, [](double value) { return numbers::fixed(value, 2); })});
    }
    return page.toHtml();
}

} // namespace

std::vector<Report> getReports()
{
    return {
        {kHeightCatalogue, enums::Adjust, true, "HeightCatalogue", Desk::tr("Каталог высот"),
         Desk::tr("Каталоги высот"), makeHeightCatalogue},
        {kResidualList, enums::Adjust, true, "ResidualList", Desk::tr("Ведомость превышений и поправок"),
         Desk::tr("Ведомости превышений и поправок"), makeResidualList},
    };
}

std::map<int, std::vector<int>> getTypesByProtocol()
{
    std::map<int, std::vector<int>> types;
    for (const Report& report : getReports())
        types[report.protocolType].push_back(report.type);
    return types;
}

void registerReports(Document& document)
{
    auto& generator = dynamic_cast<reports::ReportsGeneratorItem&>(
        *document.getModel().getFirstItem(reports::kReportsGeneratorType));
    for (const Report& report : getReports()) {
        registerEnumData(EnumData(report.type, report.internalName, report.title.toStdString(),
                                  report.pluralTitle.toStdString()));
        generator.registerReport(report.type, [&document, make = report.make] { return make(document); });
    }
    for (const auto& [protocolType, types] : getTypesByProtocol())
        document.getProtocol().addReportTypes(protocolType, types);
}

} // namespace deskreports

} // namespace orvel::desk
