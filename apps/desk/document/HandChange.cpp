#include "apps/desk/document/HandChange.h"

#include "apps/desk/Desk.h"
#include "apps/desk/runs/NumberTexts.h"

#include <QStringList>

namespace orvel::desk {

namespace handchanges {

namespace {

QString asItIs(const QString& text)
{
    return text;
}

QString describeLength(const std::optional<double>& kilometres, QString (*toText)(double) = numbers::length)
{
    return kilometres ? Desk::tr("%1\u00A0км").arg(toText(*kilometres)) : Desk::tr("не задана");
}

QString describeStations(const std::optional<int>& stations)
{
    return stations ? QString::number(*stations) : Desk::tr("не задано");
}

QString describeMeasurement(const levelling::Section& section)
{
    QStringList parts{Desk::tr("превышение %1\u00A0м").arg(numbers::height(section.difference))};
    if (section.distance)
        parts.append(Desk::tr("длина %1").arg(describeLength(section.distance)));
    if (section.stations)
        parts.append(Desk::tr("станций %1").arg(QString::number(*section.stations)));
    parts.append(Desk::tr("СКО %1\u00A0мм").arg(numbers::sigma(section.sigma)));
    return parts.join(QStringLiteral(", "));
}

/// A value and what it was before, with all decimals where fewer would not tell them apart.
template<typename Value, typename ToText>
QString compare(const QString& text, const Value& now, const Value& before, ToText toText,
                QString (*shorten)(double))
{
    const bool isSeen = toText(now, shorten) != toText(before, shorten);
    QString (*const shown)(double) = isSeen ? shorten : numbers::exact;
    return text.arg(toText(now, shown), toText(before, shown));
}

QString describeNumber(double number, QString (*toText)(double))
{
    return toText(number);
}

QString compareMeasurements(const levelling::Section& now, const levelling::Section& before)
{
    QStringList parts;
    if (now.difference != before.difference)
        parts.append(compare(Desk::tr("превышение %1\u00A0м вместо %2\u00A0м"), now.difference,
                             before.difference, describeNumber, numbers::height));
    if (now.distance != before.distance)
        parts.append(compare(Desk::tr("длина %1 вместо %2"), now.distance, before.distance, describeLength,
                             numbers::length));
    if (now.stations != before.stations)
        parts.append(Desk::tr("станций %1 вместо %2")
                         .arg(describeStations(now.stations), describeStations(before.stations)));
    if (now.sigma != before.sigma || now.stdev != before.stdev)
        parts.append(compare(Desk::tr("СКО %1\u00A0мм вместо %2\u00A0мм"), now.sigma, before.sigma,
                             describeNumber, numbers::sigma));
    return parts.join(QStringLiteral(", "));
}

QString describeRole(const levelling::Point& point)
{
    if (point.fixed)
        return Desk::tr("исходный репер, отметка %1\u00A0м").arg(numbers::height(*point.height));
    if (point.observed)
        return Desk::tr("отметка %1\u00A0м известна с ковариациями").arg(numbers::height(*point.height));
    return point.height ? Desk::tr("определяемый пункт, приближённая высота %1\u00A0м")
                              .arg(numbers::height(*point.height))
                        : Desk::tr("определяемый пункт");
}

} // namespace

QString describe(const HandChange& change)
{
    return describe(change, change.name, asItIs);
}

QString describe(const HandChange& change, const QString& itemName, QString (*escape)(const QString&))
{
    switch (change.kind) {
    case HandChange::Kind::PointChanged:
        return Desk::tr("Пункт %1 изменён вручную: %2")
            .arg(itemName,
                 Desk::tr("%1 (было: %2)").arg(describeRole(change.point), describeRole(change.pointBefore)));
    case HandChange::Kind::PointAdded:
        return Desk::tr("Пункт %1 добавлен вручную: %2").arg(itemName, describeRole(change.point));
    case HandChange::Kind::SectionOff:
        return change.reason.isEmpty()
                   ? Desk::tr("Секция %1 отключена, причина не указана").arg(itemName)
                   : Desk::tr("Секция %1 отключена: %2").arg(itemName, escape(change.reason));
    case HandChange::Kind::SectionChanged:
        return Desk::tr("Секция %1 изменена вручную: %2")
            .arg(itemName, compareMeasurements(change.section, change.sectionBefore));
    case HandChange::Kind::SectionAdded:
        return Desk::tr("Секция %1 добавлена вручную: %2").arg(itemName, describeMeasurement(change.section));
    case HandChange::Kind::SectionDeleted:
        break;
    }
    return Desk::tr("Секция %1 удалена: %2").arg(itemName, describeMeasurement(change.sectionBefore));
}

} // namespace handchanges

} // namespace orvel::desk
