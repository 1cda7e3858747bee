#include "bench/Measurement.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <chrono>
#include <ctime>
#include <malloc.h>

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

double getCpuSeconds()
{
    timespec time{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
}

} // namespace

Measurement measureCall(const std::function<void()>& function)
{
    // Memory that what went before has left free would hide memory that the function takes.
    malloc_trim(0);
    resetPeakMemory();
    const qint64 bytesBefore = getMemoryFigure("VmRSS");
    const double cpuBefore = getCpuSeconds();
    const auto start = std::chrono::steady_clock::now();
    function();
    const auto end = std::chrono::steady_clock::now();

    Measurement result;
    result.cpuSeconds = getCpuSeconds() - cpuBefore;
    result.seconds = std::chrono::duration<double>(end - start).count();
    result.peakBytes = std::max<qint64>(0, getMemoryFigure("VmHWM") - bytesBefore);
    return result;
}

QByteArray toLine(const Measurement& measurement)
{
    QJsonArray stalls;
    for (const Stall& stall : measurement.stalls)
        stalls.append(QJsonArray{stall.part, stall.seconds});
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
    for (const QJsonValue& stall : stalls)
        measurement.stalls.push_back({stall.toArray().at(0).toString(), stall.toArray().at(1).toDouble()});
    return true;
}
