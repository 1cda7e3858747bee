#include "tests/tacheometry/FieldFiles.h"

#include "tacheometry/GsiTotalStationReader.h"
#include "tacheometry/M5TotalStationReader.h"

#include <QBuffer>

namespace orvel::test {

QByteArray m5Record(const QByteArray& type, const QByteArray& information, const QList<QByteArray>& values)
{
    QByteArray line = "For M5|Adr 00001|" + type.leftJustified(4) + information.leftJustified(27) + '|';
    for (int i = 0; i < 3; ++i) {
        const QList<QByteArray> parts = i < values.size() ? values[i].split(' ') : QList<QByteArray>();
        line += parts.value(0).leftJustified(3) + parts.value(1).rightJustified(14) + ' ' +
                parts.value(2).leftJustified(4) + '|';
    }
    return line + " \r\n";
}

QByteArray m5Point(const QByteArray& code, const QByteArray& number, const QList<QByteArray>& values)
{
    return m5Record("PI1", QByteArray(10, ' ') + code.leftJustified(5) + number.rightJustified(12), values);
}

tacheometry::FieldBookReading readM5(QByteArray text)
{
    QBuffer buffer(&text);
    buffer.open(QIODevice::ReadOnly);
    return tacheometry::m5totalstation::read(buffer);
}

tacheometry::FieldBookReading readGsi(QByteArray text)
{
    QBuffer buffer(&text);
    buffer.open(QIODevice::ReadOnly);
    return tacheometry::gsitotalstation::read(buffer);
}

QString describeProblem(qint64 line, tacheometry::ProblemKind kind, const char* arguments)
{
    return QStringLiteral("%1 #%2 %3")
        .arg(QString::number(line), QString::number(static_cast<int>(kind)), QString::fromUtf8(arguments));
}

QStringList describe(const std::vector<tacheometry::Problem>& problems)
{
    QStringList texts;
    for (const tacheometry::Problem& problem : problems)
        texts.append(describeProblem(problem.line, problem.kind,
                                     problem.arguments.join(QLatin1Char('|')).toUtf8().constData()));
    return texts;
}

} // namespace orvel::test
