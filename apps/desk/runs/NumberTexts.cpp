#include "apps/desk/runs/NumberTexts.h"

#include "apps/desk/Desk.h"
#include "apps/desk/document/ToleranceRules.h"

#include <QLocale>

#include <algorithm>
#include <cmath>

namespace orvel::desk {

namespace numbers {

namespace {

// Below this three decimals would not show enough of a standard deviation of unit weight.
constexpr double kSmallUnitWeight = 0.1;

constexpr double kSecondsPerRadian = 180.0 * 3600.0 / 3.14159265358979323846;
constexpr qint64 kSecondsPerMinute = 60;
constexpr qint64 kSecondsPerDegree = 3600;

/// The number in the language that is installed.
QString localise(QString text)
{
    const QString signs = Desk::tr(",\u2212", "decimal separator and minus");
    return text.replace(QLatin1Char('.'), signs.at(0)).replace(QLatin1Char('-'), signs.at(1));
}

} // namespace

QString plain(double value, int decimals)
{
    const QString text = QString::number(value, 'f', decimals);
    const bool isZero = std::none_of(text.begin(), text.end(), [](QChar character) {
        return character >= QLatin1Char('1') && character <= QLatin1Char('9');
    });
    return isZero && text.startsWith(QLatin1Char('-')) && std::isfinite(value) ? text.mid(1) : text;
}

QString fixed(double value, int decimals)
{
    return localise(plain(value, decimals));
}

QString withSign(double value, int decimals)
{
    const QString text = plain(value, decimals);
    return localise(text.startsWith(QLatin1Char('-')) ? text : QLatin1Char('+') + text);
}

QString significant(double value, int digits)
{
    if (value == 0.0 || !std::isfinite(value))
        return fixed(value, digits - 1);
    const int leading = static_cast<int>(std::floor(std::log10(std::abs(value)))) + 1;
    return fixed(value, std::max(0, digits - leading));
}

QString shortest(double value)
{
    return localise(QString::number(value));
}

QString exact(double value)
{
    return localise(QString::number(value, 'f', QLocale::FloatingPointShortest))
        .replace(QChar(0x2212), QLatin1Char('-'));
}

QString height(double metres)
{
    return fixed(metres, 5);
}

QString coordinate(double metres)
{
    return fixed(metres, 3);
}

QString direction(double radians)
{
    constexpr qint64 fullCircle = 360 * kSecondsPerDegree;
    const qint64 seconds = qRound64(radians * kSecondsPerRadian) % fullCircle;
    return QStringLiteral("%1°%2′%3″")
        .arg(QString::number(seconds / kSecondsPerDegree),
             QString::number(seconds / kSecondsPerMinute % kSecondsPerMinute)
                 .rightJustified(2, QLatin1Char('0')),
             QString::number(seconds % kSecondsPerMinute).rightJustified(2, QLatin1Char('0')));
}

QString arcSeconds(double radians)
{
    return withSign(radians * kSecondsPerRadian, 0) + QStringLiteral("″");
}

QString arcMinutes(double radians)
{
    return withSign(radians * kSecondsPerRadian / kSecondsPerMinute, 1) + QStringLiteral("′");
}

QString arcLimit(double radians)
{
    return fixed(std::abs(radians) * kSecondsPerRadian / kSecondsPerMinute, 1) + QStringLiteral("′");
}

QString length(double kilometres)
{
    return fixed(kilometres, 3);
}

QString misclosure(double millimetres)
{
    return withSign(millimetres, 2);
}

QString sigma(double millimetres)
{
    return fixed(millimetres, 2);
}

QString unitWeight(double millimetres)
{
    return millimetres < kSmallUnitWeight ? significant(millimetres, 3) : fixed(millimetres, 3);
}

} // namespace numbers

NumberFormat::NumberFormat(const ToleranceRules& rules)
    : heightDecimals(rules.heightDecimals)
    , millimetreDecimals(rules.millimetreDecimals)
{}

QString NumberFormat::height(double metres) const
{
    return numbers::fixed(metres, heightDecimals);
}

QString NumberFormat::rise(double metres) const
{
    return numbers::withSign(metres, heightDecimals);
}

QString NumberFormat::misclosure(double millimetres) const
{
    return numbers::withSign(millimetres, millimetreDecimals);
}

QString NumberFormat::sigma(double millimetres) const
{
    return numbers::fixed(millimetres, millimetreDecimals);
}

} // namespace orvel::desk
