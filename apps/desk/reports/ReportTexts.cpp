#include "apps/desk/reports/ReportTexts.h"

#include "apps/desk/Desk.h"
#include "apps/desk/runs/NumberTexts.h"
#include "apps/desk/runs/Tolerances.h"

#include <algorithm>
#include <set>
#include <utility>

namespace orvel::desk {

namespace reporttexts {

namespace {

// So many files, or parts of a network, are named one by one.
constexpr int kNamedLimit = 20;

QString describeProject(const ReportInput& input)
{
    return input.file.isEmpty() ? Desk::tr("Проект: %1").arg(input.project)
                                : Desk::tr("Проект: %1, файл %2").arg(input.project, input.file);
}

QString describeFiles(const QStringList& sources)
{
    const QString named = QStringList(sources.mid(0, kNamedLimit)).join(QStringLiteral(", "));
    return sources.size() <= kNamedLimit ? Desk::tr("Файлы измерений: %1").arg(named)
                                         : Desk::tr("Файлы измерений: %1 и ещё %2")
                                               .arg(named, QString::number(sources.size() - kNamedLimit));
}

QString describeNetwork(const ReportInput& input)
{
    const levelling::Network& network = input.snapshot->network;
    const auto benchmarks = std::count_if(network.points.begin(), network.points.end(),
                                          [](const levelling::Point& point) { return point.isBenchmark(); });
    const QString counts = Desk::tr("Сеть: пунктов %1, из них исходных реперов %2; секций %3")
                               .arg(QString::number(network.points.size()), QString::number(benchmarks),
                                    QString::number(network.sections.size()));
    const auto off = std::count_if(input.sections.begin(), input.sections.end(),
                                   [](const ReportInput::Section& section) { return section.isOff; });
    return off == 0 ? counts : Desk::tr("%1; отключено секций %2").arg(counts, QString::number(off));
}

/// The scales of the points that have one; of some that have none one 1.
std::set<double> collectScales(const ReportInput& input)
{
    std::set<double> scales;
    for (const ReportInput::Point& point : input.points) {
        if (point.result && !point.isFixed)
            scales.insert(point.result->sigmaScale.value_or(1.0));
    }
    return scales;
}

bool hasScale(const ReportInput::Point& point)
{
    return point.result && point.result->sigmaScale;
}

QString describeSigmas(const ReportInput& input)
{
    const levelling::Parameters& parameters = input.snapshot->network.parameters;
    const QString apriori = numbers::unitWeight(parameters.sigmaApriori);
    if (std::none_of(input.points.begin(), input.points.end(), hasScale)) {
        return parameters.sigmaAct == levelling::SigmaAct::Apriori
                   ? Desk::tr("СКО вычислены по априорной СКО единицы веса μ = %1\u00A0мм").arg(apriori)
                   : Desk::tr(
                         "СКО вычислены по априорной СКО единицы веса μ = %1\u00A0мм, так как избыточных "
                         "измерений нет")
                         .arg(apriori);
    }
    const std::set<double> scales = collectScales(input);
    if (scales.size() == 1)
        return Desk::tr(
                   "СКО вычислены по апостериорной СКО единицы веса μ = %1\u00A0мм; априорная %2\u00A0мм")
            .arg(numbers::unitWeight(*scales.begin() * parameters.sigmaApriori), apriori);
    return Desk::tr(
               "СКО вычислены по апостериорной СКО единицы веса каждой части сети, в частях без избыточных "
               "измерений по априорной μ = %1\u00A0мм")
        .arg(apriori);
}

QString judgeRatio(double ratio, const levelling::PartFit& fit)
{
    if (ratio > *fit.upperRatio)
        return Desk::tr("больше верхнего предела");
    return ratio < *fit.lowerRatio ? Desk::tr("меньше нижнего предела") : Desk::tr("в пределах");
}

QString describeTest(const levelling::PartFit& fit)
{
    const QString limit = numbers::fixed(fit.errorLimit, 2);
    const QString warning = numbers::fixed(fit.warningLimit, 2);
    return (fit.isStudentised
                ? Desk::tr("поправки проверены τ-критерием Поупа, предел %1, предел предупреждения %2")
                : Desk::tr("проверены нормированные поправки, предел %1, предел предупреждения %2"))
        .arg(limit, warning);
}

QString describePart(const QString& name, const levelling::PartFit& fit,
                     const levelling::Parameters& parameters)
{
    const double apriori = parameters.sigmaApriori;
    const QString counts = Desk::tr("%1: неизвестных %2, избыточных измерений %3")
                               .arg(name, QString::number(fit.unknowns), QString::number(fit.redundancy));
    const std::optional<double> ratio = fit.getSigma0();
    if (!ratio)
        return Desk::tr("%1; μ априорная %2\u00A0мм, апостериорная не определяется")
            .arg(counts, numbers::unitWeight(apriori));
    return Desk::tr("%1; μ априорная %2\u00A0мм, апостериорная %3\u00A0мм, отношение %4 %5 %6 и %7 "
                    "(критерий χ², доверительная вероятность %8); %9")
        .arg(counts, numbers::unitWeight(apriori), numbers::unitWeight(*ratio * apriori),
             numbers::fixed(*ratio, 3), judgeRatio(*ratio, fit), numbers::fixed(*fit.lowerRatio, 3),
             numbers::fixed(*fit.upperRatio, 3), numbers::shortest(parameters.confidence), describeTest(fit));
}

} // namespace

QString none()
{
    return QStringLiteral("—");
}

levelling::Adjustment findAdjustment(const ReportInput& input)
{
    return input.isOutdated ? levelling::Adjustment() : levelling::adjust(input.snapshot->network);
}

QString warnOfOldResults()
{
    return Desk::tr("Результаты устарели: сеть изменена после уравнивания. Уравняйте её заново.");
}

QString describeOff(const ReportInput::Section& section)
{
    return section.offReason.isEmpty() ? Desk::tr("отключена")
                                       : Desk::tr("отключена: %1").arg(section.offReason);
}

ReportContent begin(const ReportInput& input, const QString& title)
{
    const levelling::Network& network = input.snapshot->network;
    ReportContent report;
    report.title = title;
    report.project = input.project;
    report.date = input.date.toString(Desk::tr("dd.MM.yyyy", "date of a report"));
    report.isToBeSigned = true;
    report.lines = QStringList{Desk::tr("Дата: %1").arg(report.date), describeProject(input)};
    if (const QString description = network.description.simplified(); !description.isEmpty())
        report.lines.append(description);
    if (!network.sources.isEmpty())
        report.lines.append(describeFiles(network.sources));
    report.lines.append(describeNetwork(input));
    report.lines.append(tolerances::describeRules(input.rules.tolerances, input.rules.levellingClass));
    report.lines.append(
        input.handChanges.isEmpty()
            ? Desk::tr("Вручную ничего не изменено")
            : Desk::tr("Изменено вручную: %1").arg(QString::number(input.handChanges.size())));
    return report;
}

void addAdjustment(ReportContent& report, const ReportInput& input, const levelling::Adjustment& adjustment)
{
    if (input.isOutdated)
        report.warning = warnOfOldResults();
    report.lines.append(describeSigmas(input));
    int named = 0;
    int others = 0;
    for (std::size_t part = 0; part < adjustment.fits.size(); ++part) {
        const std::optional<levelling::PartFit>& fit = adjustment.fits[part];
        if (!fit || adjustment.components[part].sections.empty())
            continue;
        if (named == kNamedLimit) {
            ++others;
            continue;
        }
        ++named;
        report.lines.append(describePart(Desk::tr("Часть %1").arg(QString::number(part + 1)), *fit,
                                         input.snapshot->network.parameters));
    }
    if (others > 0)
        report.lines.append(Desk::tr("Частей сети ещё: %1").arg(QString::number(others)));
}

void finish(ReportContent& report, const ReportInput& input)
{
    if (input.handChanges.isEmpty())
        return;
    ReportTable table;
    table.title = Desk::tr("Изменено вручную");
    table.columns = {{Desk::tr("№")}, {Desk::tr("Изменение"), true}};
    for (const QString& change : input.handChanges)
        table.rows.push_back(
            {{QString::number(table.rows.size() + 1), change}, ReportTable::Row::Kind::Plain});
    report.tables.push_back(std::move(table));
}

} // namespace reporttexts

} // namespace orvel::desk
