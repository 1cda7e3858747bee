#include "apps/desk/document/ProjectLock.h"

#include "apps/desk/Desk.h"
#include "host/files/CFileException.h"

#include <QDir>
#include <QFileInfo>

namespace orvel::desk {

namespace {

/// One path for all ways to the same file, where that exists.
QString makeLockPath(const QString& path)
{
    const QFileInfo given(path);
    const QFileInfo file(given.exists() ? given.canonicalFilePath() : given.absoluteFilePath());
    const QDir folder(file.absolutePath());
    return QDir(folder.exists() ? folder.canonicalPath() : folder.path())
        .filePath(QStringLiteral(".%1.lock").arg(file.fileName()));
}

} // namespace

ProjectLock::ProjectLock(const QString& lockPath) : lockFile(lockPath), lock(lockPath)
{
    // A project may be open for days; a lock is stale only when its program is gone.
    lock.setStaleLockTime(0);
}

std::shared_ptr<ProjectLock> ProjectLock::take(const QString& path)
{
    const std::shared_ptr<ProjectLock> taken(new ProjectLock(makeLockPath(path)));
    if (taken->lock.tryLock(0) || taken->lock.error() != QLockFile::LockFailedError)
        return taken;
    qint64 process = 0;
    QString computer;
    QString program;
    const bool isSigned = taken->lock.getLockInfo(&process, &computer, &program);
    // Of a program that was killed before it could write who it is. The file of a living one is not removed.
    if (!isSigned && taken->lock.removeStaleLockFile() && taken->lock.tryLock(0))
        return taken;
    throw qor::CFileException(qor::CFileException::CannotOpen,
                              Desk::tr("Файл «%1» открыт в другом окне: %2, процесс %3, компьютер %4.")
                                  .arg(path, program, QString::number(process), computer)
                                  .toStdWString());
}

bool ProjectLock::isOf(const QString& path) const
{
    return makeLockPath(path) == lockFile;
}

} // namespace orvel::desk
