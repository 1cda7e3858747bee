#include "bench/Rounds.h"

#include "bench/BenchFiles.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QProcess>

#include <algorithm>
#include <cstdio>
#include <stdexcept>

namespace orvel::bench {

namespace {

[[noreturn]] void fail(const Series& series, const char* reason)
{
    throw std::runtime_error(
        QStringLiteral("%1 %2 %3: %4")
            .arg(series.operation, QString::number(series.size), series.program, QString::fromUtf8(reason))
            .toStdString());
}

bool isFeasible(const Operation& operation, const QString& program, int size)
{
    if (program != QLatin1String("dom") || size <= operation.largestDomSize)
        return true;
    std::fprintf(stderr, "%s %d: dom is left out; it would take %s\n", qUtf8Printable(operation.name), size,
                 operation.dataFileType != 0 ? "6.5 GB for 1,000,000 messages" : "too long");
    return false;
}

std::vector<Series> makeSeries(const Operation& operation, int size, const QString& folder)
{
    qint64 dataFileBytes = 0;
    if (operation.dataFileType != 0)
        dataFileBytes = QFileInfo(getDataFilePath(folder, operation.dataFileType, size)).size();
    std::vector<Series> list;
    for (const QString& program : operation.programs) {
        if (isFeasible(operation, program, size))
            list.push_back({operation.name, size, program, dataFileBytes, {}});
    }
    return list;
}

QString getExecutable(const Operation& operation)
{
    if (operation.makeTask)
        return QCoreApplication::applicationFilePath();
    return QDir(QCoreApplication::applicationDirPath()).absoluteFilePath(QStringLiteral("orvel-bench-load"));
}

Measurement measureInChild(const Operation& operation, const Series& series, const QString& folder,
                           bool wantsDigest)
{
    QStringList arguments{QStringLiteral("--measure"),   series.program,
                          QStringLiteral("--operation"), series.operation,
                          QStringLiteral("--size"),      QString::number(series.size),
                          QStringLiteral("--folder"),    folder};
    if (wantsDigest)
        arguments.append(QStringLiteral("--digest"));
    QProcess child;
    child.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    child.start(getExecutable(operation), arguments);
    Measurement result;
    if (!child.waitForFinished(-1) || child.exitStatus() != QProcess::NormalExit ||
        !fromLine(child.readAllStandardOutput(), result))
        fail(series, "no measurement");
    return result;
}

/// The programs must have come to the same result, or the comparison means nothing.
void checkDigests(const std::vector<Series>& list)
{
    const QString expected = list.front().measurements.front().digest;
    for (const Series& series : list) {
        const QString digest = series.measurements.front().digest;
        if (!digest.isEmpty() && digest != expected)
            fail(series, "another result than the first program's");
    }
}

/// The median of a figure that `getFigure` takes from a measurement.
template<typename Function>
auto getMedian(const std::vector<Measurement>& measurements, Function getFigure)
{
    std::vector<decltype(getFigure(measurements.front()))> figures;
    figures.reserve(measurements.size());
    for (const Measurement& measurement : measurements)
        figures.push_back(getFigure(measurement));
    const auto middle = figures.begin() + static_cast<std::ptrdiff_t>(figures.size() / 2);
    std::nth_element(figures.begin(), middle, figures.end());
    return *middle;
}

} // namespace

double Series::getMedianSeconds() const
{
    return getMedian(measurements, [](const Measurement& measurement) { return measurement.seconds; });
}

double Series::getMedianCpuSeconds() const
{
    return getMedian(measurements, [](const Measurement& measurement) { return measurement.cpuSeconds; });
}

qint64 Series::getMedianPeakBytes() const
{
    return getMedian(measurements, [](const Measurement& measurement) { return measurement.peakBytes; });
}

std::vector<Stall> Series::getMedianStalls() const
{
    std::vector<Stall> stalls = measurements.front().stalls;
    for (std::size_t i = 0; i < stalls.size(); ++i) {
        stalls[i].seconds =
            getMedian(measurements, [i](const Measurement& each) { return each.stalls.at(i).seconds; });
        stalls[i].cpuSeconds =
            getMedian(measurements, [i](const Measurement& each) { return each.stalls.at(i).cpuSeconds; });
    }
    return stalls;
}

std::vector<Series> measureInRounds(const Operation& operation, int size, int rounds, const QString& folder)
{
    std::vector<Series> list = makeSeries(operation, size, folder);
    for (int round = 0; round < rounds; ++round) {
        const bool wantsDigest = round == 0;
        for (Series& series : list)
            series.measurements.push_back(measureInChild(operation, series, folder, wantsDigest));
        if (wantsDigest)
            checkDigests(list);
    }
    return list;
}

} // namespace orvel::bench
