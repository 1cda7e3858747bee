#include "apps/desk/Desk.h"
#include "apps/desk/reports/ReportMakers.h"
#include "apps/desk/reports/ReportTexts.h"
#include "apps/desk/runs/ChainTexts.h"
#include "apps/desk/runs/NumberTexts.h"
#include "apps/desk/runs/Tolerances.h"
#include "levelling/Chains.h"
#include "levelling/Components.h"

#include <QHash>

#include <algorithm>
#include <utility>

namespace orvel::desk {

namespace reportmakers {

namespace {

using levelling::Chain;
using levelling::RepeatedSections;
using Row = ReportTable::Row;

class SectionTable
{
public:
    explicit SectionTable(const ReportInput& reportInput)
        : input(reportInput)
        , network(reportInput.snapshot->network)
        , format(reportInput.rules.tolerances)
        , merged(levelling::mergeRepeatedSections(network))
        , repeatedSections(levelling::findRepeatedSections(network))
    {
        for (const RepeatedSections& repeated : repeatedSections) {
            for (const std::vector<int>* sections : {&repeated.forward, &repeated.back}) {
                for (const int section : *sections)
                    repeatedOf.insert(section, &repeated);
            }
        }
    }

    ReportTable make()
    {
        table.columns = {{Desk::tr("Секция"), true},    {Desk::tr("Направление"), true},
                         {Desk::tr("Дата"), true},      {Desk::tr("Станций")},
                         {Desk::tr("Длина, км")},       {Desk::tr("Измеренное превышение, м")},
                         {Desk::tr("Среднее, м")},      {Desk::tr("Расхождение, мм")},
                         {Desk::tr("Допуск, мм")},      {Desk::tr("Оценка"), true},
                         {Desk::tr("Примечание"), true}};
        std::size_t number = 0;
        for (const Chain& chain : levelling::traceChains(merged.network).chains)
            addLine(chain, ++number);
        addSwitchedOff();
        return std::move(table);
    }

private:
    const QString& getName(int point) const { return network.points[static_cast<std::size_t>(point)].id; }

    void addLine(const Chain& chain, std::size_t number)
    {
        QStringList values{tolerances::describeLength(chain.length)};
        if (chain.stations)
            values.append(Desk::tr("станций %1").arg(QString::number(*chain.stations)));
        values.append(Desk::tr("Σh = %1\u00A0м").arg(format.rise(chain.sum)));
        table.rows.push_back({{Desk::tr("Ход %1: %2 – %3, %4")
                                   .arg(QString::number(number), getName(chain.points.front()),
                                        getName(chain.points.back()), values.join(QStringLiteral(", ")))},
                              Row::Kind::Heading});
        for (std::size_t step = 0; step < chain.sections.size(); ++step)
            addSection(chain.sections[step], chain.points[step]);
    }

    /// Adds all measurements of a section.
    /// @param start  the end from which the line comes
    void addSection(const levelling::RouteSection& step, int start)
    {
        const auto index = static_cast<std::size_t>(step.section);
        const std::vector<int>& members = merged.members[index];
        std::vector<int> ordered = members;
        std::stable_partition(ordered.begin(), ordered.end(),
                              [&](int member) { return isForward(member, start); });
        for (const int member : ordered)
            addMeasurement(member, start);
        const RepeatedSections* repeated = repeatedOf.value(members.front());
        if (!repeated)
            return;
        const double mean = merged.network.sections[index].difference * (step.forward ? 1.0 : -1.0);
        const Tolerance tolerance = tolerances::judgeRepeated(
            repeated->discrepancy, {repeated->length, repeated->stations, repeated->discrepancySigma},
            input.rules);
        Row& first = table.rows[table.rows.size() - ordered.size()];
        first.cells[Mean] = format.rise(mean);
        first.cells[Discrepancy] = format.sigma(repeated->discrepancy);
        first.cells[Limit] = format.sigma(tolerance.limit);
        if (tolerance.isExceeded) {
            first.cells[Judgement] = Desk::tr("больше допуска");
            first.kind = Row::Kind::Marked;
        }
    }

    bool isForward(int section, int start) const
    {
        return network.sections[static_cast<std::size_t>(section)].from == start;
    }

    void addMeasurement(int index, int start)
    {
        addRow(input.snapshot->sectionNames[index], network.sections[static_cast<std::size_t>(index)],
               isForward(index, start) ? Desk::tr("прямо") : Desk::tr("обратно"));
    }

    void addSwitchedOff()
    {
        bool isFirst = true;
        for (const ReportInput::Section& section : input.sections) {
            if (!section.isOff)
                continue;
            if (std::exchange(isFirst, false))
                table.rows.push_back({{Desk::tr("Отключены")}, Row::Kind::Heading});
            addRow(section.name, section.measured, QString());
            table.rows.back().cells[Judgement] = reporttexts::describeOff(section);
        }
    }

    void addRow(const QString& name, const levelling::Section& section, const QString& direction)
    {
        table.rows.push_back(
            {{name, direction, section.date,
              section.stations ? QString::number(*section.stations) : QString(),
              section.distance ? numbers::length(*section.distance) : QString(),
              format.rise(section.difference), QString(), QString(), QString(), QString(), section.note},
             Row::Kind::Plain});
    }

    enum Column { Mean = 6, Discrepancy, Limit, Judgement };

    const ReportInput& input;
    const levelling::Network& network;
    const NumberFormat format;
    const levelling::MergedNetwork merged;
    const std::vector<RepeatedSections> repeatedSections;
    QHash<int, const RepeatedSections*> repeatedOf; ///< by each of its sections
    ReportTable table;
};

} // namespace

ReportContent makeSectionBook(const ReportInput& input)
{
    ReportContent report = reporttexts::begin(input, Desk::tr("Ведомость секций"));
    report.lines.append(
        Desk::tr("Секции стоят по ходам; «прямо» и среднее — в направлении хода, с весами 1/σ²; "
                 "расхождение — наибольшее превышение в этом направлении минус наименьшее"));
    report.tables.push_back(SectionTable(input).make());
    reporttexts::finish(report, input);
    return report;
}

} // namespace reportmakers

} // namespace orvel::desk
