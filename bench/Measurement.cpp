#include "bench/Measurement.h"

#include "bench/Clocks.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <malloc.h>

namespace orvel::bench {

namespace {

/// A figure of the process in bytes, such as "VmRSS".
qint64 getMemoryFigure(const QByteArray& name)
{
    QFile file(QStringLiteral("/proc/self/status"));
    if (!file.open(QIODevice::ReadOnly))
        qFatal("Cannot read %s", qUtf8Printable(file.fileName()));
    const QList<QByteArray> lines = file.readAll().split('\n');
    for (const QByteArray& line : lines) {
        if (line.startsWith(name + ':'))
            return line.mid(name.size() + 1).replace("kB", "").trimmed().toLongLong() * 1024;
    }
    qFatal("No %s in %s", name.constData(), qUtf8Printable(file.fileName()));
}

/// Has the system count the peak anew from now on.
void resetPeakMemory()
{
    QFile file(QStringLiteral("/proc/self/clear_refs"));
    if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered) || file.write("5") != 1)
        qFatal("Cannot write %s", qUtf8Printable(file.fileName()));
}

} // namespace

Measurement measureCall(const std::function<void()>& function)
{
    // Memory that what went before has left free would hide memory that the function takes.
    malloc_trim(0);
    resetPeakMemory();
    const qint64 bytesBefore = getMemoryFigure("VmRSS");
    const double cpuBefore = clocks::getProcessCpu();
    const double start = clocks::getSteady();
    function();
    const double end = clocks::getSteady();

    Measurement result;
    result.seconds = end - start;
    result.cpuSeconds = clocks::getProcessCpu() - cpuBefore;
    result.peakBytes = std::max<qint64>(0, getMemoryFigure("VmHWM") - bytesBefore);
    return result;
}

QByteArray toLine(const Measurement& measurement)
{
    QJsonArray stalls;
    for (const Stall& stall : measurement.stalls)
        stalls.append(QJsonArray{stall.part, stall.seconds, stall.cpuSeconds});
    const QJsonObject object{{QStringLiteral("seconds"), measurement.seconds},
                             {QStringLiteral("cpu_seconds"), measurement.cpuSeconds},
                             {QStringLiteral("peak_bytes"), measurement.peakBytes},
                             {QStringLiteral("digest"), measurement.digest},
                             {QStringLiteral("stalls"), stalls}};
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

bool fromLine(const QByteArray& line, Measurement& measurement)
{
    const QJsonObject object = QJsonDocument::fromJson(line).object();
    if (!object.contains(QStringLiteral("seconds")))
        return false;
    measurement.seconds = object[QStringLiteral("seconds")].toDouble();
    measurement.cpuSeconds = object[QStringLiteral("cpu_seconds")].toDouble();
    measurement.peakBytes = static_cast<qint64>(object[QStringLiteral("peak_bytes")].toDouble());
    measurement.digest = object[QStringLiteral("digest")].toString();
    const QJsonArray stalls = object[QStringLiteral("stalls")].toArray();
    for (const QJsonValue& value : stalls) {
        const QJsonArray stall = value.toArray();
        measurement.stalls.push_back({stall[0].toString(), stall[1].toDouble(), stall[2].toDouble()});
    }
    return true;
}

} // namespace orvel::bench
