#include "apps/desk/gui/ItemColumns.h"

#include "apps/desk/Desk.h"
#include "apps/desk/gui/GlyphIcon.h"
#include "apps/desk/runs/NumberTexts.h"

namespace orvel::desk {

namespace itemcolumns {

namespace {

QString toText(int column, const QVariant& value)
{
    if (!value.isValid())
        return QString();
    switch (column) {
    case X:
    case Y:
        return numbers::coordinate(value.toDouble());
    case Height:
    case Difference:
        return numbers::height(value.toDouble());
    case Sigma:
        return numbers::sigma(value.toDouble());
    case Residual:
        return numbers::misclosure(value.toDouble());
    case Report:
        return QString();
    default:
        return value.toString();
    }
}

QString toToolTip(int column, const QVariant& value)
{
    if (column != Report)
        return toText(column, value);
    return value.toBool() ? Desk::tr("Показать все строки протоколов об этом пункте или секции")
                          : Desk::tr("В протоколах нет строк об этом");
}

QString toAccessibleText(int column, const QVariant& value)
{
    if (column != Report)
        return toText(column, value);
    return value.toBool() ? Desk::tr("есть протокол") : Desk::tr("протокола нет");
}

} // namespace

QString getTitle(int column)
{
    switch (column) {
    case Name:
        return Desk::tr("Имя");
    case Type:
        return Desk::tr("Вид");
    case X:
        return Desk::tr("X, м");
    case Y:
        return Desk::tr("Y, м");
    case Height:
        return Desk::tr("Высота, м");
    case Sigma:
        return Desk::tr("СКО, мм");
    case Difference:
        return Desk::tr("Превышение, м");
    case Residual:
        return Desk::tr("Поправка, мм");
    case Lines:
        return Desk::tr("Строк протокола");
    case Report:
        return Desk::tr("Протокол");
    default:
        return QString();
    }
}

QString getExplanation(int column)
{
    switch (column) {
    case Name:
        return Desk::tr("Имя пункта, или имена концов секции");
    case Type:
        return Desk::tr("Исходный репер, определяемый пункт или секция");
    case X:
        return Desk::tr("Координата на север, заданная или вычисленная по тахеометрии");
    case Y:
        return Desk::tr("Координата на восток, заданная или вычисленная по тахеометрии");
    case Height:
        return Desk::tr("Отметка репера, уравненная высота пункта или высота по тахеометрии");
    case Sigma:
        return Desk::tr("СКО уравненной высоты, у секции — априорная СКО измерения");
    case Difference:
        return Desk::tr("Измеренное превышение секции");
    case Residual:
        return Desk::tr("Поправка в измеренное превышение из уравнивания");
    case Lines:
        return Desk::tr("Сколько строк протоколов говорит об этом пункте или секции");
    case Report:
        return Desk::tr("Щелчок или Enter показывает строки протоколов об этом пункте или секции");
    default:
        return QString();
    }
}

QVariant present(int column, const QVariant& value, int role)
{
    switch (role) {
    case Qt::DisplayRole:
        return toText(column, value);
    case Qt::ToolTipRole:
        return toToolTip(column, value).toHtmlEscaped();
    case Qt::AccessibleTextRole:
        return toAccessibleText(column, value);
    case Qt::TextAlignmentRole:
        return column >= X && column <= Lines ? QVariant(int(Qt::AlignRight | Qt::AlignVCenter))
                                              : QVariant(int(Qt::AlignLeft | Qt::AlignVCenter));
    case Qt::DecorationRole:
        return column == Report && value.toBool() ? QVariant(makeIcon(Glyph::Protocol)) : QVariant();
    case SortRole:
        return value;
    default:
        return QVariant();
    }
}

} // namespace itemcolumns

} // namespace orvel::desk
