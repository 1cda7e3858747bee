#include "bench/BenchFiles.h"

#include "bench/BenchHost.h"
#include "bench/SampleMessages.h"
#include "host/files/CFileException.h"
#include "tests/support/OrvelTestAccess.h"

#include <QDir>
#include <QFile>

namespace orvel::bench {

QString getWorkPath(const TaskRequest& request, const QString& suffix)
{
    return QDir(request.folder).absoluteFilePath(request.program + QLatin1Char('.') + suffix);
}

QString getDataFilePath(const QString& folder, int protocolType, int size)
{
    return QDir(folder).absoluteFilePath(
        QStringLiteral("data_%1_%2.xml").arg(QString::number(protocolType), QString::number(size)));
}

void prepareDataFile(const QString& folder, int protocolType, int size)
{
    const QString path = getDataFilePath(folder, protocolType, size);
    if (QFile::exists(path))
        return;
    BenchHost host;
    OrvelTestAccess::dataFilePath(host.protocol) = path;
    OrvelTestAccess::messages(host.protocol) = sample::makeMessages(protocolType, size);
    if (!OrvelTestAccess::WriteXML(host.protocol))
        throw qor::CFileException(qor::CFileException::CannotWrite, path.toStdWString());
}

} // namespace orvel::bench
