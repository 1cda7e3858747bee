#include "apps/desk/reports/ReportSignatures.h"

#include "apps/desk/Desk.h"

namespace orvel::desk {

namespace reportsignatures {

QStringList getColumns()
{
    return {QString(), Desk::tr("подпись"), Desk::tr("фамилия, инициалы"), Desk::tr("дата")};
}

QStringList getRoles()
{
    return {Desk::tr("Выполнил"), Desk::tr("Проверил")};
}

} // namespace reportsignatures

} // namespace orvel::desk
