#include "host/app/TempFolder.h"

#include "host/files/CFileException.h"
#include "host/files/RandomName.h"
#include "host/files/StringUtils.h"
#include "host/files/UnfinishedFile.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

// An instance holds a lock on its folder, which the system takes back however the instance ends: a folder
// without a lock is nobody's. Version 1.0 locked none, and named its folders by twelve letters.

namespace {

constexpr int kTries = 100;

[[noreturn]] void fail(const QString& folder, const QString& reason)
{
    throw qor::CFileException(
        qor::CFileException::CannotCreateFolder,
        QCoreApplication::translate("Host", "Не удалось создать временную папку в «%1»: %2.")
            .arg(QDir::toNativeSeparators(folder), reason)
            .toStdWString());
}

int openFolder(const QString& path)
{
    return open(QFile::encodeName(path).constData(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
}

/// Removes the folder if it is this user's and nobody has locked it.
void removeLeftOver(const QString& path)
{
    const int folder = openFolder(path);
    if (folder < 0)
        return;
    struct stat status = {};
    if (fstat(folder, &status) == 0 && status.st_uid == geteuid() && flock(folder, LOCK_EX | LOCK_NB) == 0) {
        UnfinishedFile::removeThoseNotedIn(path);
        QDir(path).removeRecursively();
    }
    close(folder);
}

/// What the names of the program's folders begin with.
QString makePrefix(const QString& name)
{
    return QString(name).replace(QLatin1Char('/'), QLatin1Char('_')) + QLatin1Char('-');
}

} // namespace

TempFolder::TempFolder(const QString& name)
{
    // Empty when TMPDIR names a folder that does not exist; the path would lead to the file system's root.
    const QString systemFolder = QDir::tempPath();
    if (systemFolder.isEmpty())
        fail(qEnvironmentVariable("TMPDIR"), QCoreApplication::translate("Host", "такой папки нет"));
    removeLeftOvers(name);
    for (int i = 0; i < kTries; ++i) {
        if (make(systemFolder + QLatin1Char('/') + makePrefix(name) + randomname::make()))
            return;
    }
    fail(systemFolder, utils::describeReason(qt_error_string()));
}

void TempFolder::removeLeftOvers(const QString& name)
{
    // An empty path would lead to the present folder.
    if (QDir::tempPath().isEmpty())
        return;
    const QDir system(QDir::tempPath());
    const QStringList folders =
        system.entryList({makePrefix(name) + QString(randomname::kLength, QLatin1Char('?'))},
                         QDir::Dirs | QDir::Hidden | QDir::NoSymLinks);
    for (const QString& folder : folders)
        removeLeftOver(system.filePath(folder));
}

void TempFolder::restore()
{
    if (QFileInfo::exists(path))
        return;
    unlock();
    // One that is seen before it is locked may be removed once more.
    for (int i = 0; i < kTries && !make(path); ++i)
        continue;
}

TempFolder::~TempFolder()
{
    QDir(path).removeRecursively();
    unlock();
}

QString TempFolder::filePath(const QString& fileName) const
{
    return path + QLatin1Char('/') + fileName;
}

bool TempFolder::make(const QString& candidate)
{
    if (mkdir(QFile::encodeName(candidate).constData(), S_IRWXU) != 0)
        return false;
    lock = openFolder(candidate);
    if (lock < 0) {
        const int reason = errno;
        rmdir(QFile::encodeName(candidate).constData());
        errno = reason;
        return false;
    }
    // Another instance may have come between and taken the folder for one that was left. Where the file
    // system knows no locks, none is ever removed.
    struct stat status = {};
    const bool isTaken = (flock(lock, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK) ||
                         fstat(lock, &status) != 0 || status.st_nlink == 0;
    if (isTaken) {
        unlock();
        return false;
    }
    path = candidate;
    return true;
}

void TempFolder::unlock()
{
    if (lock >= 0)
        close(lock);
    lock = -1;
}
