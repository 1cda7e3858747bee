#include "apps/desk/Desk.h"
#include "apps/desk/reports/ReportMakers.h"
#include "apps/desk/reports/ReportTexts.h"
#include "apps/desk/runs/NumberTexts.h"

namespace orvel::desk {

namespace reportmakers {

ReportContent makeHeightCatalogue(const ReportInput& input)
{
    ReportContent report = reporttexts::begin(input, Desk::tr("Каталог высот"));
    reporttexts::addAdjustment(report, input, reporttexts::findAdjustment(input));
    const NumberFormat format(input.rules.tolerances);
    ReportTable table;
    table.columns = {
        {Desk::tr("Пункт"), true}, {Desk::tr("Вид"), true}, {Desk::tr("Высота, м")}, {Desk::tr("СКО, мм")}};
    for (const ReportInput::Point& point : input.points) {
        table.rows.push_back(
            {{point.name, point.isFixed ? Desk::tr("исходный репер") : Desk::tr("определяемый пункт"),
              point.result ? format.height(point.result->height) : Desk::tr("не определена"),
              point.result && !point.isFixed ? format.sigma(point.result->sigma) : reporttexts::none()},
             point.result ? ReportTable::Row::Kind::Plain : ReportTable::Row::Kind::Marked});
    }
    report.tables.push_back(std::move(table));
    reporttexts::finish(report, input);
    return report;
}

} // namespace reportmakers

} // namespace orvel::desk
