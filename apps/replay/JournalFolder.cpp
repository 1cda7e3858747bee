#include "apps/replay/JournalFolder.h"

#include "apps/replay/JournalError.h"

#include <QDir>
#include <QFileInfo>

namespace orvel::replay {

namespace {

[[noreturn]] void refuse(const QString& name, const char* reason)
{
    throw JournalError(QStringLiteral("\"%1\" %2").arg(name, QLatin1String(reason)));
}

} // namespace

QString JournalFolder::locate(const QString& name) const
{
    if (name.isEmpty() || name.contains(QChar(0)))
        refuse(name, "is no name of a file");
    if (QDir::isAbsolutePath(name))
        refuse(name, "is not relative");
    if (name.split(QLatin1Char('/')).contains(QStringLiteral("..")))
        refuse(name, "has a \"..\"");

    const QString filePath = path.isEmpty() ? name : path + QLatin1Char('/') + name;
    const QFileInfo file(filePath);
    // What is not there leads nowhere, unless it is a link: a file would be made where that points to.
    if (!holds(file.path()) || file.isSymLink())
        refuse(name, "leads through a symbolic link");
    return filePath;
}

/// Whether a folder, if it is there, really lies in the journal's or below it.
bool JournalFolder::holds(const QString& folderPath) const
{
    const QString real = QDir(folderPath).canonicalPath();
    QString top = QDir(path).canonicalPath();
    if (real.isEmpty() || real == top)
        return true;
    if (!top.endsWith(QLatin1Char('/')))
        top += QLatin1Char('/');
    return real.startsWith(top);
}

} // namespace orvel::replay
