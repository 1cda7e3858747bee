#pragma once

#include <QByteArray>
#include <QString>

/// The whole file. A file that cannot be read is a failure of the test's own and ends the program.
QByteArray readFile(const QString& path);

/// Makes or replaces the file. A file that cannot be written ends the program.
void writeFile(const QString& path, const QByteArray& content);
