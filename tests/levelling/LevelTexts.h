#pragma once

#include "levelling/LevelBook.h"

#include <QString>
#include <QStringList>

/// What the reading of a level's file gave, as texts that tests compare.
namespace orvel::test {

inline QString pointId(const levelling::LevelResult& result, int point)
{
    return result.file.network.points.at(static_cast<std::size_t>(point)).id;
}

/// "A-B 1.23450 m, 40.0 m, 2 st.", section by section.
inline QStringList sectionsOf(const levelling::LevelResult& result)
{
    QStringList texts;
    for (const levelling::Section& section : result.file.network.sections)
        texts.append(QStringLiteral("%1-%2 %3 m, %4 m, %5 st.")
                         .arg(pointId(result, section.from), pointId(result, section.to),
                              QString::number(section.difference, 'f', 5),
                              QString::number(*section.distance * 1000.0, 'f', 1),
                              QString::number(*section.stations)));
    return texts;
}

inline QString problem(levelling::ProblemKind kind, qint64 line, const char* arguments = "")
{
    return QStringLiteral("%1@%2: %3")
        .arg(QString::number(static_cast<int>(kind)), QString::number(line), QString::fromUtf8(arguments));
}

/// "kind@line: arguments", problem by problem.
inline QStringList problemsOf(const levelling::LevelResult& result)
{
    QStringList texts;
    for (const levelling::Problem& each : result.file.problems)
        texts.append(
            problem(each.kind, each.line, each.arguments.join(QLatin1Char('|')).toUtf8().constData()));
    return texts;
}

} // namespace orvel::test
