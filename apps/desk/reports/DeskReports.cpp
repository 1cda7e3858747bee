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

#include <algorithm>
#include <set>

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

/// The scales of the points that have one; of some that have none one 1.
std::set<double> collectScales(const Document& document)
{
    std::set<double> scales;
    for (const LevellingPoint* point : document.getPoints()) {
        if (point->getResult() && !point->getPoint().fixed)
            scales.insert(point->getResult()->sigmaScale.value_or(1.0));
    }
    return scales;
}

bool hasScale(const LevellingPoint* point)
{
    return point->getResult() && point->getResult()->sigmaScale;
}

QString describeSigmas(const Document& document)
{
    const double sigmaApriori = document.getParameters().sigmaApriori;
    const QString apriori = numbers::unitWeight(sigmaApriori);
    const std::vector<LevellingPoint*> points = document.getPoints();
    if (std::none_of(points.begin(), points.end(), hasScale)) {
        return document.getParameters().sigmaAct == levelling::SigmaAct::Apriori
                   ? Desk::tr("СКО вычислены по априорной СКО единицы веса μ = %1\u00A0мм").arg(apriori)
                   : Desk::tr(
                         "СКО вычислены по априорной СКО единицы веса μ = %1\u00A0мм, так как избыточных "
                         "измерений нет")
                         .arg(apriori);
    }
    const std::set<double> scales = collectScales(document);
    if (scales.size() == 1)
        return Desk::tr(
                   "СКО вычислены по апостериорной СКО единицы веса μ = %1\u00A0мм; априорная %2\u00A0мм")
            .arg(numbers::unitWeight(*scales.begin() * sigmaApriori), apriori);
    return Desk::tr(
               "СКО вычислены по апостериорной СКО единицы веса каждой части сети, в частях без избыточных "
               "измерений по априорной μ = %1\u00A0мм")
        .arg(apriori);
}

QString twoDecimals(double value)
{
    return numbers::fixed(value, 2);
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
    page.addLine(
        Desk::tr("Поправка v = уравненное превышение − измеренное превышение; r — доля ошибки измерения, "
                 "которую показывает поправка; ∇ — оценка ошибки −v/r; «Обнаруживается от» — наименьшая "
                 "ошибка, которую "
                 "проверка обнаруживает с вероятностью 80\u00A0%"));
    page.setColumns({Desk::tr("Секция"), Desk::tr("Длина, км"), Desk::tr("СКО, мм"),
                     Desk::tr("Измеренное превышение, м"), Desk::tr("Поправка v, мм"),
                     Desk::tr("Уравненное превышение, м"), Desk::tr("Нормированная поправка"), Desk::tr("r"),
                     Desk::tr("∇, мм"), Desk::tr("Обнаруживается от, мм")},
                    1);
    for (const LevellingSection* section : document.getSections()) {
        const levelling::Section& measured = section->getSection();
        std::optional<double> residual;
        std::optional<double> adjusted;
        LevellingSection::Result tests;
        if (const auto& result = section->getResult()) {
            residual = result->residual;
            adjusted = measured.difference + result->residual / 1000.0;
            tests = *result;
        }
        page.addRow({section->getName(), optionalNumber(measured.distance, numbers::length),
                     numbers::sigma(measured.sigma), numbers::height(measured.difference),
                     optionalNumber(residual, numbers::misclosure), optionalNumber(adjusted, numbers::height),
                     optionalNumber(tests.normalisedResidual, twoDecimals),
                     optionalNumber(tests.redundancy, twoDecimals),
                     optionalNumber(tests.grossError, numbers::misclosure),
                     optionalNumber(tests.detectableError, twoDecimals)});
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
