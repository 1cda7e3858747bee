#include "apps/desk/gui/ItemColumns.h"

#include "apps/desk/Desk.h"
#include "apps/desk/gui/GlyphIcon.h"
#include "apps/desk/gui/ItemLook.h"
#include "apps/desk/runs/NumberTexts.h"

#include <array>
#include <cmath>

namespace orvel::desk {

namespace itemcolumns {

namespace {

QString toText(int column, const QVariant& value, const NumberFormat& format)
{
    if (!value.isValid())
        return QString();
    switch (column) {
    case Severity:
        return itemlook::nameSeverity(static_cast<COVMessage::MessageType>(value.toInt()));
    case X:
    case Y:
        return numbers::coordinate(value.toDouble());
    case Height:
    case Difference:
        return format.height(value.toDouble());
    case Sigma:
        return format.sigma(value.toDouble());
    case Length:
        return numbers::length(value.toDouble());
    case Residual:
        return format.misclosure(value.toDouble());
    case NormalisedResidual:
    case Redundancy:
        return numbers::fixed(value.toDouble(), 2);
    case Report:
        return QString();
    default:
        return value.toString();
    }
}

bool isNumber(int column)
{
    return (column >= X && column <= Lines) || column == SourceLine;
}

QString toToolTip(int column, const QVariant& value, const NumberFormat& format)
{
    if (column != Report)
        return toText(column, value, format);
    return value.toBool() ? Desk::tr("Показать все строки протоколов об этом пункте или секции")
                          : Desk::tr("В протоколах нет строк об этом");
}

QString toAccessibleText(int column, const QVariant& value, const NumberFormat& format)
{
    if (column != Report)
        return toText(column, value, format);
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
    case Severity:
        return Desk::tr("Важность");
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
    case Length:
        return Desk::tr("Длина, км");
    case Stations:
        return Desk::tr("Штативов");
    case Residual:
        return Desk::tr("Поправка, мм");
    case NormalisedResidual:
        return Desk::tr("|v|/σ");
    case Redundancy:
        return Desk::tr("Избыточность");
    case Lines:
        return Desk::tr("Строк протокола");
    case Source:
        return Desk::tr("Файл");
    case SourceLine:
        return Desk::tr("Строка файла");
    case Date:
        return Desk::tr("Дата");
    case Note:
        return Desk::tr("Примечание");
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
    case Severity:
        return Desk::tr("Самая важная из строк последних протоколов об этом пункте или секции");
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
        return Desk::tr("Поправка в измеренное превышение из уравнивания; сортируется по размеру");
    case NormalisedResidual:
        return Desk::tr(
            "Размер нормированной или стьюдентизированной поправки, как её проверяет уравнивание");
    case Redundancy:
        return Desk::tr("Доля ошибки измерения, которую показывает поправка: от 0 до 1");
    case Length:
        return Desk::tr("Длина секции");
    case Stations:
        return Desk::tr("Число штативов секции");
    case Source:
        return Desk::tr("Файл, из которого пункт или секция");
    case SourceLine:
        return Desk::tr("Номер строки этого файла");
    case Date:
        return Desk::tr("Когда секция измерена, как сказано в файле");
    case Note:
        return Desk::tr("Примечание к секции из файла");
    case Lines:
        return Desk::tr("Сколько строк протоколов говорит об этом пункте или секции");
    case Report:
        return Desk::tr("Щелчок или Enter показывает строки протоколов об этом пункте или секции");
    default:
        return QString();
    }
}

QString getKey(int column)
{
    static const std::array<const char*, kCount> keys = {
        "name",       "type",       "severity", "x",          "y",        "height",
        "sigma",      "difference", "length",   "stations",   "residual", "normalisedResidual",
        "redundancy", "lines",      "source",   "sourceLine", "date",     "note",
        "report"};
    return QLatin1String(keys[static_cast<std::size_t>(column)]);
}

QVariant present(int column, const QVariant& value, const NumberFormat& format, int role)
{
    switch (role) {
    case Qt::DisplayRole:
        return toText(column, value, format);
    case Qt::ToolTipRole:
        return toToolTip(column, value, format).toHtmlEscaped();
    case Qt::AccessibleTextRole:
        return toAccessibleText(column, value, format);
    case Qt::TextAlignmentRole:
        return isNumber(column) ? QVariant(int(Qt::AlignRight | Qt::AlignVCenter))
                                : QVariant(int(Qt::AlignLeft | Qt::AlignVCenter));
    case Qt::DecorationRole:
        return column == Report && value.toBool() ? QVariant(makeIcon(Glyph::Protocol)) : QVariant();
    case SortRole:
        // Large residuals are looked for, whatever their sign.
        return column == Residual && value.isValid() ? std::abs(value.toDouble()) : value;
    default:
        return QVariant();
    }
}

} // namespace itemcolumns

} // namespace orvel::desk
