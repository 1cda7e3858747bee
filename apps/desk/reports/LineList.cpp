#include "apps/desk/Desk.h"
#include "apps/desk/reports/ReportMakers.h"
#include "apps/desk/reports/ReportTexts.h"
#include "apps/desk/runs/ChainTexts.h"
#include "apps/desk/runs/NumberTexts.h"
#include "apps/desk/runs/Tolerances.h"
#include "levelling/Chains.h"
#include "levelling/Components.h"

namespace orvel::desk {

namespace reportmakers {

namespace {

using levelling::Chain;
using Row = ReportTable::Row;

// So many points of a line are named.
constexpr std::size_t kNamedPoints = 50;

/// The points between the ends.
QString listInnerPoints(const levelling::Network& network, const Chain& chain)
{
    QStringList names;
    const std::size_t inner = chain.points.size() - 2;
    for (std::size_t i = 1; i <= inner && i <= kNamedPoints; ++i)
        names.append(network.points[static_cast<std::size_t>(chain.points[i])].id);
    const QString list = names.join(QStringLiteral(", "));
    return inner > kNamedPoints ? Desk::tr("%1 и ещё %2").arg(list, QString::number(inner - kNamedPoints))
                                : list;
}

Row makeRow(const levelling::Network& network, const Chain& chain, std::size_t number,
            const SurveyRules& rules)
{
    const NumberFormat format(rules.tolerances);
    const auto name = [&](int point) { return network.points[static_cast<std::size_t>(point)].id; };
    QString misclosure = reporttexts::none();
    QString limit = reporttexts::none();
    QString ratio = reporttexts::none();
    QStringList judgements;
    if (const QString lack = chaintexts::describeLack(chain.kind); !lack.isEmpty())
        judgements.append(lack);
    if (chain.misclosure) {
        const Tolerance tolerance =
            tolerances::judgeLoop(*chain.misclosure, {chain.length, chain.stations, chain.sigma}, rules);
        misclosure = format.misclosure(*chain.misclosure);
        limit = QStringLiteral("±") + format.sigma(tolerance.limit);
        ratio = numbers::fixed(tolerance.ratio, 2);
        if (tolerance.isExceeded)
            judgements.append(Desk::tr("больше допуска"));
    }
    return {{QString::number(number), chaintexts::nameKind(chain.kind), name(chain.points.front()),
             name(chain.points.back()), listInnerPoints(network, chain),
             chain.length ? numbers::length(*chain.length) : reporttexts::none(),
             chain.stations ? QString::number(*chain.stations) : reporttexts::none(), format.rise(chain.sum),
             misclosure, limit, ratio, judgements.join(QStringLiteral(", "))},
            judgements.isEmpty() ? Row::Kind::Plain : Row::Kind::Marked};
}

} // namespace

ReportContent makeLineList(const ReportInput& input)
{
    ReportContent report = reporttexts::begin(input, Desk::tr("Ведомость ходов"));
    report.lines.append(
        Desk::tr("Ход соединяет секции через определяемые пункты, в которых сходятся только две; узловой "
                 "пункт — тот, где сходятся три или больше. Повторные измерения секции, в том числе прямо и "
                 "обратно, — одна секция, их среднее"));
    const levelling::MergedNetwork merged = levelling::mergeRepeatedSections(input.snapshot->network);
    const levelling::Chains found = levelling::traceChains(merged.network);
    ReportTable table;
    table.columns = {{Desk::tr("№")},
                     {Desk::tr("Вид"), true},
                     {Desk::tr("Начало"), true},
                     {Desk::tr("Конец"), true},
                     {Desk::tr("Через пункты"), true},
                     {Desk::tr("Длина, км")},
                     {Desk::tr("Станций")},
                     {Desk::tr("Σh, м")},
                     {Desk::tr("Невязка, мм")},
                     {Desk::tr("Допуск, мм")},
                     {Desk::tr("Отношение")},
                     {Desk::tr("Оценка"), true}};
    std::size_t number = 0;
    for (const Chain& chain : found.chains)
        table.rows.push_back(makeRow(merged.network, chain, ++number, input.rules));
    report.tables.push_back(std::move(table));
    reporttexts::finish(report, input);
    return report;
}

} // namespace reportmakers

} // namespace orvel::desk
