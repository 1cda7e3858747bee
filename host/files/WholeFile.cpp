#include "host/files/WholeFile.h"

#include "host/files/QtFile.h"

namespace files {

QByteArray readAll(const QString& path)
{
    QtFile file(path);
    file.open(QIODevice::ReadOnly);
    QByteArray content = file.device()->readAll();
    file.close();
    return content;
}

void writeAll(const QString& path, const QByteArray& content)
{
    QtFile file(path);
    file.open(QIODevice::WriteOnly);
    file.device()->write(content);
    file.close();
}

} // namespace files
