#include "bench/Measurement.h"

#include "bench/BenchFiles.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>

#include <chrono>
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

} // namespace

Measurement measure(const Operation& operation, const TaskRequest& request, bool wantsDigest)
{
    TaskRequest warmUp = request;
    warmUp.size = kWarmUpSize;
    operation.makeTask(warmUp)->run();

    const std::unique_ptr<Task> task = operation.makeTask(request);
    // What preparing the task has left free would hide memory that the task takes.
    malloc_trim(0);
    resetPeakMemory();
    const qint64 before = getMemoryFigure("VmRSS");
    const auto start = std::chrono::steady_clock::now();
    task->run();
    const auto end = std::chrono::steady_clock::now();

    Measurement result;
    result.seconds = std::chrono::duration<double>(end - start).count();
    result.peakBytes = getMemoryFigure("VmHWM") - before;
    if (wantsDigest)
        result.digest = task->getDigest();
    return result;
}

QByteArray toLine(const Measurement& measurement)
{
    const QJsonObject object{{QStringLiteral("seconds"), measurement.seconds},
                             {QStringLiteral("peak_bytes"), measurement.peakBytes},
                             {QStringLiteral("digest"), measurement.digest}};
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

bool fromLine(const QByteArray& line, Measurement& measurement)
{
    const QJsonObject object = QJsonDocument::fromJson(line).object();
    if (!object.contains(QStringLiteral("seconds")))
        return false;
    measurement.seconds = object[QStringLiteral("seconds")].toDouble();
    measurement.peakBytes = static_cast<qint64>(object[QStringLiteral("peak_bytes")].toDouble());
    measurement.digest = object[QStringLiteral("digest")].toString();
    return true;
}
