#include "apps/desk/Desk.h"
#include "apps/desk/reports/ReportMakers.h"
#include "apps/desk/reports/ReportTexts.h"
#include "apps/desk/runs/NumberTexts.h"
#include "levelling/Adjustment.h"

#include <QHash>

#include <cmath>

namespace orvel::desk {

namespace reportmakers {

namespace {

using Row = ReportTable::Row;

/// The value as a text, or that there is none.
template<typename ToText>
QString show(const std::optional<double>& value, const ToText& toText)
{
    return value ? toText(*value) : reporttexts::none();
}

QString twoDecimals(double value)
{
    return numbers::fixed(value, 2);
}

class ResidualTable
{
public:
    ResidualTable(const ReportInput& reportInput, const levelling::Adjustment& networkAdjustment)
        : input(reportInput)
        , adjustment(networkAdjustment)
        , format(reportInput.rules.tolerances)
    {
        for (std::size_t index = 0; index < input.snapshot->sectionIds.size(); ++index)
            indexOfSection.insert(input.snapshot->sectionIds[index], index);
    }

    ReportTable make() const
    {
        ReportTable table;
        table.columns = {{Desk::tr("Секция"), true},
                         {Desk::tr("Длина, км")},
                         {Desk::tr("СКО, мм")},
                         {Desk::tr("Измеренное превышение, м")},
                         {Desk::tr("Поправка v, мм")},
                         {Desk::tr("Уравненное превышение, м")},
                         {Desk::tr("Нормированная поправка")},
                         {Desk::tr("r")},
                         {Desk::tr("∇, мм")},
                         {Desk::tr("Обнаруживается от, мм")},
                         {Desk::tr("Оценка"), true}};
        for (const ReportInput::Section& section : input.sections)
            table.rows.push_back(makeRow(section));
        return table;
    }

private:
    Row makeRow(const ReportInput::Section& section) const
    {
        const levelling::Section& measured = section.measured;
        std::optional<double> residual;
        std::optional<double> adjusted;
        LevellingSection::Result tests;
        if (section.result) {
            residual = section.result->residual;
            adjusted = measured.difference + section.result->residual / 1000.0;
            tests = *section.result;
        }
        const QString judgement = judge(section);
        const auto height = [this](double metres) { return format.height(metres); };
        const auto misclosure = [this](double millimetres) { return format.misclosure(millimetres); };
        const auto sigma = [this](double millimetres) { return format.sigma(millimetres); };
        return {{section.name, show(measured.distance, numbers::length), format.sigma(measured.sigma),
                 format.height(measured.difference), show(residual, misclosure), show(adjusted, height),
                 show(tests.normalisedResidual, twoDecimals), show(tests.redundancy, twoDecimals),
                 show(tests.grossError, misclosure), show(tests.detectableError, sigma), judgement},
                judgement.isEmpty() || section.isOff ? Row::Kind::Plain : Row::Kind::Marked};
    }

    /// What is wrong with the section, in words; empty if nothing is.
    QString judge(const ReportInput::Section& section) const
    {
        if (section.isOff)
            return reporttexts::describeOff(section);
        const auto index = indexOfSection.constFind(section.id);
        if (!section.result || index == indexOfSection.cend() || *index >= adjustment.sections.size() ||
            !adjustment.sections[*index])
            return QString();
        const std::optional<double>& statistic = adjustment.sections[*index]->statistic;
        if (!statistic)
            return Desk::tr("не контролируется");
        const levelling::PartFit& fit = adjustment.getFit(input.snapshot->network.sections[*index].from);
        if (std::abs(*statistic) > fit.errorLimit)
            return Desk::tr("больше предела");
        return std::abs(*statistic) > fit.warningLimit ? Desk::tr("больше предела предупреждения")
                                                       : QString();
    }

    const ReportInput& input;
    const levelling::Adjustment& adjustment;
    const NumberFormat format;
    QHash<LONGID, std::size_t> indexOfSection;
};

} // namespace

ReportContent makeResidualList(const ReportInput& input)
{
    ReportContent report = reporttexts::begin(input, Desk::tr("Ведомость превышений и поправок"));
    const levelling::Adjustment adjustment = reporttexts::findAdjustment(input);
    reporttexts::addAdjustment(report, input, adjustment);
    report.lines.append(
        Desk::tr("Поправка v = уравненное превышение − измеренное превышение; r — доля ошибки измерения, "
                 "которую показывает поправка; ∇ — оценка ошибки −v/r; «Обнаруживается от» — наименьшая "
                 "ошибка, которую "
                 "проверка обнаруживает с вероятностью 80\u00A0%"));
    report.tables.push_back(ResidualTable(input, adjustment).make());
    reporttexts::finish(report, input);
    return report;
}

} // namespace reportmakers

} // namespace orvel::desk
