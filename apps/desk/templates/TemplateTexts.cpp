#include "apps/desk/templates/TemplateTexts.h"

#include "apps/desk/Desk.h"

namespace orvel::desk {

namespace templatetexts {

using levelling::CellFault;
using levelling::ColumnRole;
using levelling::TemplateFault;

QString describeRole(ColumnRole role)
{
    switch (role) {
    case ColumnRole::Skip:
        return Desk::tr("не читать");
    case ColumnRole::From:
        return Desk::tr("начальный пункт");
    case ColumnRole::To:
        return Desk::tr("конечный пункт");
    case ColumnRole::Difference:
        return Desk::tr("превышение");
    case ColumnRole::Length:
        return Desk::tr("длина");
    case ColumnRole::Stations:
        return Desk::tr("число штативов");
    case ColumnRole::Sigma:
        return Desk::tr("СКО, мм");
    case ColumnRole::Date:
        return Desk::tr("дата");
    case ColumnRole::Note:
        return Desk::tr("примечание");
    case ColumnRole::Point:
        return Desk::tr("пункт");
    case ColumnRole::Height:
        return Desk::tr("отметка, м");
    case ColumnRole::X:
        return Desk::tr("X (север), м");
    case ColumnRole::Y:
        break;
    }
    return Desk::tr("Y (восток), м");
}

QString describeUnit(levelling::DifferenceUnit unit)
{
    switch (unit) {
    case levelling::DifferenceUnit::Centimetre:
        return Desk::tr("см");
    case levelling::DifferenceUnit::Millimetre:
        return Desk::tr("мм");
    case levelling::DifferenceUnit::Metre:
        break;
    }
    return Desk::tr("м");
}

QString describeUnit(levelling::LengthUnit unit)
{
    return unit == levelling::LengthUnit::Kilometre ? Desk::tr("км") : Desk::tr("м");
}

QString describeSeparator(QChar separator)
{
    if (separator == QLatin1Char(' '))
        return Desk::tr("пробелы");
    if (separator == QLatin1Char('\t'))
        return Desk::tr("табуляция");
    return Desk::tr("«%1»").arg(separator);
}

QString describe(const levelling::TableTemplate& format)
{
    QStringList columns;
    for (const ColumnRole role : format.columns)
        columns.append(describeRole(role));
    const QString division = format.syntax.widths.empty()
                                 ? Desk::tr("разделитель %1").arg(describeSeparator(format.syntax.separator))
                                 : Desk::tr("столбцы постоянной ширины");
    return Desk::tr("«%1»; %2; десятичный знак «%3»; кодировка %4; столбцы: %5")
        .arg(format.name, division, QString(format.decimal), QString::fromLatin1(format.syntax.encoding),
             columns.join(QStringLiteral(" | ")));
}

QString describeFault(const levelling::TableTemplate& format, const TemplateFault& fault)
{
    const QString role =
        QStringLiteral("%1 (%2)").arg(levelling::getRoleName(fault.role), describeRole(fault.role));
    switch (fault.kind) {
    case TemplateFault::Kind::RoleMissing:
        return format.isOfPoints() || fault.role == ColumnRole::Point
                   ? Desk::tr("в columns нет столбца %1; для таблицы пунктов нужны point и height или x и y")
                         .arg(role)
                   : Desk::tr("в columns нет столбца %1; для таблицы секций нужны from, to и dh").arg(role);
    case TemplateFault::Kind::RoleRepeated:
        return Desk::tr("в columns столбец %1 назван дважды; повторяться может только skip").arg(role);
    case TemplateFault::Kind::RolesMixed:
        return Desk::tr(
                   "в columns смешаны столбцы секций и пунктов: %1; в таблице секций есть from, to, dh, в "
                   "таблице пунктов — point, height, x, y")
            .arg(role);
    case TemplateFault::Kind::WidthCount:
        return Desk::tr("в widths %1 чисел, а в columns столбцов %2; нужно поровну")
            .arg(QString::number(format.syntax.widths.size()), QString::number(format.columns.size()));
    case TemplateFault::Kind::SeparatorUnusable:
        break;
    }
    return Desk::
        tr("separator «%1» не может разделять столбцы; нужен один знак, например «;», «,», «|», пробел или "
           "табуляция")
            .arg(format.syntax.separator);
}

QString describeFault(const CellFault& fault)
{
    switch (fault.kind) {
    case CellFault::Kind::Missing:
        return Desk::tr("пусто");
    case CellFault::Kind::OtherDecimal:
        return Desk::tr("другой десятичный знак");
    case CellFault::Kind::NoNumber:
        break;
    }
    return Desk::tr("непригодное число");
}

} // namespace templatetexts

} // namespace orvel::desk
