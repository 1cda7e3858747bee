#include "apps/desk/runs/LevelLines.h"

#include "apps/desk/Desk.h"
#include "apps/desk/runs/NumberTexts.h"
#include "apps/desk/runs/Tolerances.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace orvel::desk {

namespace {

using levelling::LevelCheck;
using levelling::LevelCheckKind;
using levelling::LevelLine;
using levelling::LevelMethod;

constexpr double kMillimetres = 1000.0;

QString methodText(LevelMethod method)
{
    switch (method) {
    case LevelMethod::BackFore:
        return QStringLiteral("BF");
    case LevelMethod::BackForeForeBack:
        return QStringLiteral("BFFB");
    case LevelMethod::AlternateBackFore:
        return QStringLiteral("aBF");
    case LevelMethod::AlternateBackForeForeBack:
        return QStringLiteral("aBFFB");
    case LevelMethod::OtherDouble:
        return Desk::tr("два отсчёта по каждой рейке");
    case LevelMethod::Unknown:
        break;
    }
    return Desk::tr("порядок отсчётов не назван");
}

} // namespace

LevelLines::LevelLines(FileLines& fileLines, const levelling::LevelBookFindings& findings,
                       const QHash<QString, int>& pointIndices, const levelling::NetworkAddition& entered)
    : lines(fileLines)
    , result(findings)
    , indexOfPoint(pointIndices)
    , addition(entered)
{}

QString LevelLines::point(const QString& name)
{
    const auto known = indexOfPoint.constFind(name);
    return known == indexOfPoint.constEnd() ? RunLines::escape(name) : lines.get().point(*known);
}

QString LevelLines::place(const LevelCheck& check)
{
    const QString points = check.from == check.to
                               ? Desk::tr("рейка на %1").arg(point(check.from))
                               : QStringLiteral("%1 – %2").arg(point(check.from), point(check.to));
    const QString station = Desk::tr("Строка файла %1: ход %2, станция %3 (%4)")
                                .arg(QString::number(check.line), QString::number(check.levelLine + 1),
                                     QString::number(check.station), points);
    if (check.section < 0)
        return station;
    return Desk::tr("%1, секция %2")
        .arg(station, lines.get().section(check.section + static_cast<int>(addition.firstSection)));
}

void LevelLines::writeCheck(const LevelCheck& check)
{
    const QString first = numbers::height(check.first);
    const QString second = numbers::height(check.second);
    const QString deviation = numbers::misclosure((check.first - check.second) * kMillimetres);
    const QString limit = numbers::sigma(check.limit);
    const double ratio = std::abs(check.first - check.second) * kMillimetres / check.limit;
    switch (check.kind) {
    case LevelCheckKind::StatedHeight:
    case LevelCheckKind::SightHeight:
        lines.error(
            Desk::tr("%1: высота по прибору %2\u00A0м, по отсчётам %3\u00A0м, разность %4\u00A0мм, "
                     "округление объясняет %5\u00A0мм; взято превышение по отсчётам, проверьте запись")
                .arg(place(check), first, second, deviation, limit),
            ratio);
        break;
    case LevelCheckKind::TwoReadings:
        lines.error(Desk::tr("%1: превышение по первым отсчётам %2\u00A0м, по вторым %3\u00A0м, разность "
                             "%4\u00A0мм при допуске %5\u00A0мм; взято среднее, повторите станцию")
                        .arg(place(check), first, second, deviation, limit),
                    ratio);
        break;
    case LevelCheckKind::RepeatedReading:
        lines.error(
            Desk::tr("%1: отсчёт %2\u00A0м, при повторении %3\u00A0м, разность %4\u00A0мм при допуске "
                     "%5\u00A0мм; взят последний, проверьте запись")
                .arg(place(check), first, second, deviation, limit),
            ratio);
        break;
    case LevelCheckKind::EnteredHeight:
        lines.warning(Desk::tr("Строка файла %1: пункту %2 введена отметка %4\u00A0м, прежде — %3\u00A0м; "
                               "действует последняя")
                          .arg(QString::number(check.line), point(check.from), first, second));
        break;
    }
}

bool LevelLines::writeSummary(const SurveyRules& rules)
{
    writeComparison();
    for (std::size_t i = 0; i < result.lines.size(); ++i) {
        if (!lines.get().isRunning())
            return false;
        writeLine(i, rules);
    }
    writeUnused();
    if (result.isInFeet)
        lines.message(Desk::tr(
            "Длины в футах или дюймах пересчитаны в метры: 1\u00A0фут = 12\u00A0дюймов = 0,3048\u00A0м"));
    return true;
}

void LevelLines::writeComparison()
{
    int stations = 0;
    int compared = 0;
    for (const LevelLine& line : result.lines) {
        stations += line.stations;
        compared += line.comparedHeights;
    }
    const auto deviating =
        std::count_if(result.checks.begin(), result.checks.end(), [](const LevelCheck& check) {
            return check.kind == LevelCheckKind::StatedHeight || check.kind == LevelCheckKind::SightHeight;
        });
    lines.message(Desk::tr("Ходов: %1, станций: %2; с высотами прибора сверено: %3, из них расходится: %4")
                      .arg(QString::number(result.lines.size()), QString::number(stations),
                           QString::number(compared), QString::number(deviating)));
}

void LevelLines::writeLine(std::size_t index, const SurveyRules& rules)
{
    const LevelLine& line = result.lines[index];
    // That it has none was told already.
    if (line.sectionCount == 0)
        return;
    QStringList parts;
    const auto linkTo = [this](int number) {
        return lines.get().point(addition.places[static_cast<std::size_t>(number)]);
    };
    const bool isClosed = line.from == line.to && line.from >= 0 && !line.isInterrupted;
    const double misclosure = line.difference * kMillimetres;
    const Tolerance tolerance = tolerances::judgeLoop(misclosure, {line.length, line.stations, 0.0}, rules);
    const NumberFormat format(rules.tolerances);
    if (line.stations > 0) {
        parts.append(Desk::tr("станций %1, длина %2\u00A0км")
                         .arg(QString::number(line.stations), numbers::length(line.length)));
        if (isClosed)
            parts.append(Desk::tr("невязка замкнутого хода %1\u00A0мм при допуске %2\u00A0мм (%3)")
                             .arg(format.misclosure(misclosure), format.sigma(tolerance.limit),
                                  tolerances::describeClassInUse(rules)));
        else if (!line.isInterrupted)
            parts.append(Desk::tr("превышение %1\u00A0м").arg(numbers::withSign(line.difference, 5)));
    }
    if (line.readingDifference)
        parts.append(Desk::tr("Σ разностей двух отсчётов %1\u00A0мм, на станции до %2\u00A0мм")
                         .arg(numbers::misclosure(*line.readingDifference),
                              numbers::sigma(line.largestReadingDifference)));
    if (line.comparedHeights > 0)
        parts.append(Desk::tr("с прибором расходится до %1\u00A0мм")
                         .arg(numbers::fixed(line.largestHeightDeviation, 3)));
    if (line.turningPoints == 1)
        parts.append(Desk::tr("переходная точка %1").arg(RunLines::escape(line.firstTurningPoint)));
    else if (line.turningPoints > 1)
        parts.append(Desk::tr("переходные точки %1…%2 (%3)")
                         .arg(RunLines::escape(line.firstTurningPoint),
                              RunLines::escape(line.lastTurningPoint), QString::number(line.turningPoints)));
    if (line.sideShots > 0)
        parts.append(Desk::tr("промежуточных точек %1").arg(QString::number(line.sideShots)));
    if (line.averagedReadings > 0)
        parts.append(Desk::tr("повторных отсчётов усреднено %1").arg(QString::number(line.averagedReadings)));
    std::vector<int> sections(static_cast<std::size_t>(line.sectionCount));
    std::iota(sections.begin(), sections.end(), line.firstSection + static_cast<int>(addition.firstSection));
    parts.append((sections.size() == 1 ? Desk::tr("секция %1") : Desk::tr("секции %1"))
                     .arg(lines.get().listSections(sections)));

    const QString ends = line.stations == 0
                             ? Desk::tr("без станций")
                             : QStringLiteral("%1 → %2").arg(linkTo(line.from), linkTo(line.to));
    const QString text =
        Desk::tr("Ход %1 (строки файла %2–%3): %4, %5: %6")
            .arg(QString::number(index + 1), QString::number(line.firstLine), QString::number(line.lastLine),
                 ends, methodText(line.method), parts.join(QStringLiteral("; ")));
    if (isClosed && tolerance.isExceeded)
        lines.error(text, tolerance.ratio);
    else
        lines.message(text);
}

void LevelLines::writeUnused()
{
    if (result.unused.empty())
        return;
    QStringList entries;
    QStringList together;
    for (std::size_t i = 0; i < result.unused.size(); ++i) {
        const levelling::UnusedEntries& entry = result.unused[i];
        together.append(RunLines::escape(entry.what));
        const bool goesOn = i + 1 < result.unused.size() && result.unused[i + 1].count == entry.count &&
                            result.unused[i + 1].firstLine == entry.firstLine;
        if (goesOn)
            continue;
        entries.append(Desk::tr("%1 (по %2, впервые в строке %3)")
                           .arg(together.join(QStringLiteral(", ")), QString::number(entry.count),
                                QString::number(entry.firstLine)));
        together.clear();
    }
    lines.message(Desk::tr("Не использованы слова и записи без отсчётов хода: %1")
                      .arg(entries.join(QStringLiteral("; "))));
}

} // namespace orvel::desk
