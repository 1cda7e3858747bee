#include "bench/Report.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

namespace orvel::bench {

namespace {

/// Two sizes between which the cost of one message is compared.
struct Growth
{
    int smallSize;
    int largeSize;
};

constexpr Growth kGrowths[] = {{10000, 1000000}, {48000, 96000}};

const Series* find(const std::vector<Series>& list, const QString& operation, int size,
                   const QString& program)
{
    const auto found = std::find_if(list.begin(), list.end(), [&](const Series& series) {
        return series.operation == operation && series.size == size && series.program == program;
    });
    return found == list.end() ? nullptr : &*found;
}

QString makeNumber(double number, int decimals)
{
    return QString::number(number, 'f', decimals);
}

/// Whether nothing can be faster than the program of that row.
bool isBound(const QString& program)
{
    return program == QLatin1String("limit") || program == QLatin1String("bare");
}

/// Whether that is the library with more to do: with a window, or beside busy programs.
bool isBurdened(const QString& program)
{
    return program == QLatin1String("window") || program == QLatin1String("busy");
}

/// What the program takes of the time of another, by both clocks.
QString makeShare(const Series& series, const Series& other)
{
    return QStringLiteral("%1 takes %2 of %3 (cpu %4)")
        .arg(series.program, makeNumber(series.getMedianSeconds() / other.getMedianSeconds(), 2),
             other.program, makeNumber(series.getMedianCpuSeconds() / other.getMedianCpuSeconds(), 2));
}

/// How the library stands against the program of the row, by both clocks.
QString makeRatio(const Series& series, const Series& orvel)
{
    if (isBound(series.program))
        return makeShare(orvel, series);
    if (isBurdened(series.program))
        return makeShare(series, orvel);
    return QStringLiteral("orvel is %1 times faster (cpu %2)")
        .arg(makeNumber(series.getMedianSeconds() / orvel.getMedianSeconds(), 2),
             makeNumber(series.getMedianCpuSeconds() / orvel.getMedianCpuSeconds(), 2));
}

QString makeMemory(const Series& series)
{
    const auto bytes = static_cast<double>(series.getMedianPeakBytes());
    QString text = QStringLiteral("%1 MB").arg(makeNumber(bytes / 1e6, 1), 8);
    if (series.dataFileBytes > 0)
        text += QStringLiteral(" %1 of file")
                    .arg(makeNumber(bytes / static_cast<double>(series.dataFileBytes), 2), 5);
    else
        text += QString(14, QLatin1Char(' '));
    return text;
}

QString makeStalls(const Series& series)
{
    QStringList texts;
    for (const Stall& stall : series.getMedianStalls())
        texts.append(QStringLiteral("%1 %2 ms (cpu %3)")
                         .arg(stall.part, makeNumber(stall.seconds * 1000, 1),
                              makeNumber(stall.cpuSeconds * 1000, 1)));
    return texts.isEmpty() ? QString() : QStringLiteral("longest stall: ") + texts.join(QStringLiteral(", "));
}

QString makeRow(const Series& series, const Series* orvel)
{
    const double seconds = series.getMedianSeconds();
    QString row = QStringLiteral("%1 %2 %3 %4 s (cpu %5 s) %6 us each %7  ")
                      .arg(series.operation, -11)
                      .arg(series.size, 7)
                      .arg(series.program, -18)
                      .arg(makeNumber(seconds, 6), 10)
                      .arg(makeNumber(series.getMedianCpuSeconds(), 6), 10)
                      .arg(makeNumber(seconds / series.size * 1e6, 3), 7)
                      .arg(makeMemory(series));
    if (orvel && orvel != &series)
        row += makeRatio(series, *orvel) + QStringLiteral("  ");
    row += makeStalls(series);
    return row.trimmed() + QLatin1Char('\n');
}

/// How the cost of one message grows from a small run to a large one; empty for other sizes than those.
QString makeGrowthRow(const Series& large, const std::vector<Series>& list)
{
    for (const Growth& growth : kGrowths) {
        const Series* small = find(list, large.operation, growth.smallSize, large.program);
        if (!small || large.size != growth.largeSize)
            continue;
        const double factor = static_cast<double>(large.size) / small->size;
        const double ratio = large.getMedianSeconds() / small->getMedianSeconds() / factor;
        const double cpuRatio = large.getMedianCpuSeconds() / small->getMedianCpuSeconds() / factor;
        return QStringLiteral("%1 %2 each at %3: %4 (cpu %5) of that at %6\n")
            .arg(large.operation, -11)
            .arg(large.program, -18)
            .arg(large.size)
            .arg(makeNumber(ratio, 2), makeNumber(cpuRatio, 2), QString::number(small->size));
    }
    return QString();
}

QJsonObject makeJsonRow(const Series& series, const QString& operation, double seconds, qint64 peakBytes)
{
    return {{QStringLiteral("operation"), operation},
            {QStringLiteral("size"), series.size},
            {QStringLiteral("program"), series.program},
            {QStringLiteral("seconds"), seconds},
            {QStringLiteral("peak_bytes"), peakBytes}};
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
    for (const Series& series : list) {
        const qint64 peakBytes = series.getMedianPeakBytes();
        rows.append(makeJsonRow(series, series.operation, series.getMedianSeconds(), peakBytes));
        for (const Stall& stall : series.getMedianStalls()) {
            const QString name = series.operation + QStringLiteral("_stall_") + stall.part;
            rows.append(makeJsonRow(series, name, stall.seconds, peakBytes));
        }
    }
    return QJsonDocument(rows).toJson();
}

} // namespace orvel::bench
