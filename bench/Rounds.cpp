#include "bench/Rounds.h"

#include <QCoreApplication>
#include <QProcess>

#include <algorithm>

namespace {

constexpr int kLargestDomSize = 100000;

bool isFeasible(const Operation& operation, const QString& program, int size)
{
    if (program != QLatin1String("dom") || size <= kLargestDomSize)
        return true;
    fprintf(stderr, "%s %d: dom is left out, it takes 6.5 GB\n", qUtf8Printable(operation.name), size);
    return false;
}

Measurement measureInChild(const Series& series, const QString& folder, bool wantsDigest)
{
    QStringList arguments{QStringLiteral("--measure"),   series.program,
                          QStringLiteral("--operation"), series.operation,
                          QStringLiteral("--size"),      QString::number(series.size),
                          QStringLiteral("--folder"),    folder};
    if (wantsDigest)
        arguments.append(QStringLiteral("--digest"));
    QProcess child;
    child.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    child.start(QCoreApplication::applicationFilePath(), arguments);
    Measurement result;
    if (!child.waitForFinished(-1) || child.exitStatus() != QProcess::NormalExit ||
        !fromLine(child.readAllStandardOutput(), result))
        qFatal("No measurement: %s", qUtf8Printable(arguments.join(QLatin1Char(' '))));
    return result;
}

/// The programs must have come to the same result, or the comparison means nothing.
void checkDigests(const std::vector<Series>& list)
{
    const QString expected = list.front().measurements.front().digest;
    for (const Series& series : list) {
        const QString digest = series.measurements.front().digest;
        if (!digest.isEmpty() && digest != expected)
            qFatal("%s %d: %s came to another result than %s", qUtf8Printable(series.operation), series.size,
                   qUtf8Printable(series.program), qUtf8Printable(list.front().program));
    }
}

template<typename Number>
Number getMedian(std::vector<Number> numbers)
{
    const auto middle = numbers.begin() + static_cast<std::ptrdiff_t>(numbers.size() / 2);
    std::nth_element(numbers.begin(), middle, numbers.end());
    return *middle;
}

} // namespace

double Series::getMedianSeconds() const
{
    std::vector<double> seconds;
    for (const Measurement& measurement : measurements)
        seconds.push_back(measurement.seconds);
    return getMedian(std::move(seconds));
}

qint64 Series::getMedianPeakBytes() const
{
    std::vector<qint64> bytes;
    for (const Measurement& measurement : measurements)
        bytes.push_back(measurement.peakBytes);
    return getMedian(std::move(bytes));
}

std::vector<Series> measureInRounds(const Operation& operation, int size, int rounds, const QString& folder)
{
    std::vector<Series> list;
    for (const QString& program : operation.programs) {
        if (isFeasible(operation, program, size))
            list.push_back({operation.name, size, program, {}});
    }
    for (int round = 0; round < rounds; ++round) {
        const bool wantsDigest = round == 0;
        for (Series& series : list)
            series.measurements.push_back(measureInChild(series, folder, wantsDigest));
        if (wantsDigest)
            checkDigests(list);
    }
    return list;
}
