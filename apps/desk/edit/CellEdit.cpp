#include "apps/desk/edit/CellEdit.h"

#include "apps/desk/Desk.h"
#include "apps/desk/document/Document.h"
#include "apps/desk/document/LevellingPoint.h"
#include "apps/desk/document/LevellingSection.h"
#include "apps/desk/gui/ItemColumns.h"
#include "apps/desk/runs/NumberTexts.h"

#include <QRegularExpression>

#include <cmath>

namespace orvel::desk {

namespace celledits {

namespace {

// Heights and differences are metres on the Earth, everything else is smaller.
constexpr double kLargestNumber = 1e5;

Outcome refuse(const QString& problem)
{
    return {false, problem};
}

Outcome apply(Document& document, const QString& text, NetworkChange change)
{
    if (document.areEditsRefused())
        return refuse(Desk::tr("Во время обработки сеть не меняется."));
    document.applyChange(text, std::move(change));
    return {true, QString()};
}

} // namespace

std::optional<double> parseNumber(const QString& text)
{
    // Thousands may stand apart, by spaces of any width.
    static const QRegularExpression grouped(
        QStringLiteral("^[-+\u2212]?[0-9]{1,3}(?:\\s[0-9]{3})+(?:[.,][0-9]*)?$"),
        QRegularExpression::UseUnicodePropertiesOption);
    QString number = text.trimmed();
    if (grouped.match(number).hasMatch())
        number = number.simplified().remove(QLatin1Char(' '));
    number.replace(QLatin1Char(','), QLatin1Char('.')).replace(QChar(0x2212), QLatin1Char('-'));
    bool isNumber = false;
    const double value = number.toDouble(&isNumber);
    return isNumber && std::isfinite(value) && std::abs(value) <= kLargestNumber
               ? std::optional<double>(value)
               : std::nullopt;
}

QString toText(double number)
{
    return numbers::exact(number);
}

bool isEditable(const Document& document, const LevellingPoint& point, int column)
{
    return column == itemcolumns::Height && point.getPoint().fixed && !document.areEditsRefused();
}

bool isEditable(const Document& document, const LevellingSection& /*section*/, int column)
{
    const bool isMeasured = column == itemcolumns::Difference || column == itemcolumns::Sigma ||
                            column == itemcolumns::Length || column == itemcolumns::Stations;
    return isMeasured && !document.areEditsRefused();
}

QString getText(const LevellingPoint& point, int column)
{
    return column == itemcolumns::Height && point.getPoint().height ? toText(*point.getPoint().height)
                                                                    : QString();
}

QString getText(const LevellingSection& section, int column)
{
    switch (column) {
    case itemcolumns::Difference:
        return toText(section.getSection().difference);
    case itemcolumns::Sigma:
        return toText(section.getSection().sigma);
    case itemcolumns::Length:
        return section.getSection().distance ? toText(*section.getSection().distance) : QString();
    case itemcolumns::Stations:
        return section.getSection().stations ? QString::number(*section.getSection().stations) : QString();
    default:
        return QString();
    }
}

Outcome edit(Document& document, const LevellingPoint& point, int column, const QString& text)
{
    const std::optional<double> height = parseNumber(text);
    if (column != itemcolumns::Height || !height)
        return refuse(
            Desk::tr("Отметка «%1» — не число. Исходному реперу нужна отметка в метрах, как 123,4567.")
                .arg(text));
    if (text == getText(point, column))
        return {true, QString()};
    return apply(document, Desk::tr("отметка %1").arg(point.getName()),
                 networkchange::changePoints(document, {point.getId()}, [&height](levelling::Point& changed) {
                     changed.height = height;
                 }));
}

Outcome edit(Document& document, const LevellingSection& section, int column, const QString& text)
{
    const std::optional<double> number = parseNumber(text);
    // A value that stays is no statement about it.
    if (number && text == getText(section, column))
        return {true, QString()};
    if (column == itemcolumns::Difference) {
        if (!number)
            return refuse(Desk::tr("Превышение «%1» — не число. Введите метры, как −1,2345.").arg(text));
        return apply(document, Desk::tr("превышение %1").arg(section.getName()),
                     networkchange::changeSections(
                         document, {section.getId()},
                         [&number](levelling::Section& changed) { changed.difference = *number; }));
    }
    if (column == itemcolumns::Length) {
        if (!number || *number <= 0.0)
            return refuse(
                Desk::tr("Длина «%1» — не число больше нуля. Введите километры, как 0,85.").arg(text));
        return apply(document, Desk::tr("длина %1").arg(section.getName()),
                     networkchange::changeSections(document, {section.getId()},
                                                   [&number](levelling::Section& changed) {
                                                       networkchange::setDistance(changed, *number);
                                                   }));
    }
    if (column == itemcolumns::Stations) {
        if (!number || *number < 1.0 || *number != std::floor(*number))
            return refuse(Desk::tr("Станций «%1» — не целое число больше нуля, как 12.").arg(text));
        const auto stations = static_cast<int>(*number);
        return apply(document, Desk::tr("число станций %1").arg(section.getName()),
                     networkchange::changeSections(document, {section.getId()},
                                                   [stations](levelling::Section& changed) {
                                                       networkchange::setStations(changed, stations);
                                                   }));
    }
    if (!number || *number <= 0.0)
        return refuse(Desk::tr("СКО «%1» — не число больше нуля. Введите миллиметры, как 2,5.").arg(text));
    return apply(
        document, Desk::tr("СКО %1").arg(section.getName()),
        networkchange::changeSections(document, {section.getId()}, [&number](levelling::Section& changed) {
            networkchange::setSigma(changed, *number);
        }));
}

} // namespace celledits

} // namespace orvel::desk
