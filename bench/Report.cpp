#include "bench/Report.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

namespace {

constexpr int kSmallSize = 10000;
constexpr int kLargeSize = 1000000;

const Series* find(const std::vector<Series>& list, const QString& operation, int size,
                   const QString& program)
{
    const auto found = std::find_if(list.begin(), list.end(), [&](const Series& series) {
        return series.operation == operation && series.size == size && series.program == program;
    });
    return found == list.end() ? nullptr : &*found;
}

QString makeMegabytes(qint64 bytes)
{
    return QString::number(static_cast<double>(bytes) / 1e6, 'f', 1);
}

/// How the library stands against the program of the row, in time and in memory.
QString makeRatios(const Series& series, const Series& orvel)
{
    const double time = series.getMedianSeconds() / orvel.getMedianSeconds();
    const QString ratio = series.program == QLatin1String("limit")
                              ? QStringLiteral("orvel takes %1 of it").arg(1 / time, 0, 'f', 2)
                              : QStringLiteral("orvel is %1 times faster").arg(time, 0, 'f', 2);
    const double memory =
        static_cast<double>(orvel.getMedianPeakBytes()) / static_cast<double>(series.getMedianPeakBytes());
    return ratio + QStringLiteral(", memory %1 of it").arg(memory, 0, 'f', 2);
}

QString makeRow(const Series& series, const Series* orvel)
{
    const double seconds = series.getMedianSeconds();
    QString row = QStringLiteral("%1 %2 %3 %4 s %5 us each %6 MB")
                      .arg(series.operation, -12)
                      .arg(series.size, 8)
                      .arg(series.program, -19)
                      .arg(seconds, 10, 'f', 6)
                      .arg(seconds / series.size * 1e6, 8, 'f', 3)
                      .arg(makeMegabytes(series.getMedianPeakBytes()), 8);
    if (orvel && orvel != &series)
        row += QStringLiteral("   ") + makeRatios(series, *orvel);
    return row + QLatin1Char('\n');
}

/// How the cost of one message grows from a small run to a large one.
QString makeGrowthRow(const Series& large, const std::vector<Series>& list)
{
    const Series* small = find(list, large.operation, kSmallSize, large.program);
    if (!small || large.size != kLargeSize)
        return QString();
    const double growth = large.getMedianSeconds() / large.size / (small->getMedianSeconds() / small->size);
    return QStringLiteral("%1 %2 per message at %3: %4 of that at %5\n")
        .arg(large.operation, -12)
        .arg(large.program, -19)
        .arg(large.size)
        .arg(growth, 0, 'f', 2)
        .arg(small->size);
}

} // namespace

QString makeTable(const std::vector<Series>& list)
{
    QString table;
    for (const Series& series : list)
        table += makeRow(series, find(list, series.operation, series.size, QStringLiteral("orvel")));
    for (const Series& series : list)
        table += makeGrowthRow(series, list);
    return table;
}

QByteArray makeJson(const std::vector<Series>& list)
{
    QJsonArray rows;
    for (const Series& series : list)
        rows.append(QJsonObject{{QStringLiteral("operation"), series.operation},
                                {QStringLiteral("size"), series.size},
                                {QStringLiteral("program"), series.program},
                                {QStringLiteral("seconds"), series.getMedianSeconds()},
                                {QStringLiteral("peak_bytes"), series.getMedianPeakBytes()}});
    return QJsonDocument(rows).toJson();
}
