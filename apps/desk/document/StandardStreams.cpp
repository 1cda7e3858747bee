#include "apps/desk/document/StandardStreams.h"

#include "apps/desk/Desk.h"
#include "host/files/WholeFile.h"

#include <QDir>

namespace orvel::desk {

namespace standardstreams {

bool isStream(const QString& path)
{
    return path == QLatin1String("-");
}

bool isOutput(const QString& path)
{
    return isStream(path) || QDir::cleanPath(path) == QLatin1String("/dev/stdout");
}

QString describeInput(const QString& path)
{
    return isStream(path) ? Desk::tr("стандартный ввод") : path;
}

QString describeOutput(const QString& path)
{
    return isStream(path) ? Desk::tr("стандартный вывод") : path;
}

void write(const QString& path, const QByteArray& bytes)
{
    files::writeAll(isStream(path) ? QStringLiteral("/dev/stdout") : path, bytes);
}

} // namespace standardstreams

} // namespace orvel::desk
