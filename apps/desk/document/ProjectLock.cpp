#include "apps/desk/document/ProjectLock.h"

#include "apps/desk/Desk.h"
#include "host/files/CFileException.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>
#include <utility>

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

/// Whether a program like this one that runs keeps its temporary files there: it has locked the folder.
bool isFolderInUse(const QString& folder)
{
    if (!QFileInfo(folder).fileName().startsWith(QCoreApplication::applicationName() + QLatin1Char('-')))
        return false;
    const int descriptor = open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0)
        return false;
    const bool isLocked = flock(descriptor, LOCK_SH | LOCK_NB) != 0 && errno == EWOULDBLOCK;
    close(descriptor);
    return isLocked;
}

[[noreturn]] void refuse(const QString& text)
{
    throw qor::CFileException(qor::CFileException::CannotOpen, text.toStdWString());
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
    const Attempt attempt = taken->attempt();
    if (attempt == Attempt::OfAnother)
        refuse(Desk::tr("Файл «%1» открыт в другом окне: %2.").arg(path, taken->describeOther()));
    if (attempt == Attempt::Impossible)
        taken->warning =
            Desk::tr(
                "Проект «%1» не заблокирован: рядом с ним нельзя создать файл. Пока он открыт, его может "
                "изменить и другое окно.")
                .arg(path);
    return taken;
}

void ProjectLock::requireFree(const QString& path)
{
    if (isFolderInUse(QFileInfo(path).absolutePath()))
        refuse(Desk::tr("Файл «%1» не записан: в этой папке лежат временные файлы работающей программы.")
                   .arg(path));
    ProjectLock lock(makeLockPath(path));
    if (QFileInfo::exists(lock.lockFile) && lock.attempt() == Attempt::OfAnother)
        refuse(Desk::tr("Файл «%1» не записан: это открытый проект (%2).").arg(path, lock.describeOther()));
}

bool ProjectLock::isOf(const QString& path) const
{
    return makeLockPath(path) == lockFile;
}

QString ProjectLock::takeWarning()
{
    return std::exchange(warning, QString());
}

ProjectLock::Attempt ProjectLock::attempt()
{
    if (lock.tryLock(0))
        return Attempt::Held;
    if (lock.error() != QLockFile::LockFailedError || !QFileInfo(lockFile).isFile())
        return Attempt::Impossible;
    qint64 process = 0;
    QString computer;
    QString program;
    const bool isSigned = lock.getLockInfo(&process, &computer, &program);
    // Of a program that was killed before it could write who it is. The file of a living one is not removed.
    if (!isSigned && lock.removeStaleLockFile() && lock.tryLock(0))
        return Attempt::Held;
    return Attempt::OfAnother;
}

QString ProjectLock::describeOther() const
{
    qint64 process = 0;
    QString computer;
    QString program;
    lock.getLockInfo(&process, &computer, &program);
    return Desk::tr("%1, процесс %2, компьютер %3").arg(program, QString::number(process), computer);
}

} // namespace orvel::desk
