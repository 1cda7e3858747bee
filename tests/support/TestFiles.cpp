#include "tests/support/TestFiles.h"

#include <QFile>

QByteArray readFile(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        qFatal("Cannot read %s: %s", qUtf8Printable(path), qUtf8Printable(file.errorString()));
    return file.readAll();
}

void writeFile(const QString& path, const QByteArray& content)
{
    // File systems wait for the disk where a file is emptied and written again.
    QFile::remove(path);
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size() || !file.flush())
        qFatal("Cannot write %s: %s", qUtf8Printable(path), qUtf8Printable(file.errorString()));
}
