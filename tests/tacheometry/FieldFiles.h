#pragma once

#include "tacheometry/FieldBookReading.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

namespace orvel::test {

/// A record of an M5 file with its end of line. Each value is its type, number and unit, blanks between.
QByteArray m5Record(const QByteArray& type, const QByteArray& information,
                    const QList<QByteArray>& values = {});
/// The record of a point: code and number stand where most instruments write them.
QByteArray m5Point(const QByteArray& code, const QByteArray& number, const QList<QByteArray>& values);

tacheometry::FieldBookReading readM5(QByteArray text);
tacheometry::FieldBookReading readGsi(QByteArray text);

/// The problems, one a line: line, kind by its number in the enumeration, arguments.
QStringList describe(const std::vector<tacheometry::Problem>& problems);
/// One problem in this form; the arguments are divided by bars.
QString describeProblem(qint64 line, tacheometry::ProblemKind kind, const char* arguments = "");

} // namespace orvel::test
