#include "host/files/UnfinishedFile.h"

#include "host/files/RandomName.h"

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

const QString kNotePrefix = QStringLiteral("unfinished-");
constexpr mode_t kPermissions = S_IRWXU | S_IRWXG | S_IRWXO;

/// Never destroyed: an application object that lives as long as the process sets it after that.
QString& getNoteFolder()
{
    static auto* const folder = new QString;
    return *folder;
}

/// A link to the file, which is made by one call: there is no note that is not whole. Empty if it cannot be
/// made; the file is written all the same.
QString leaveNote(const QString& path)
{
    static std::atomic<int> count{0};
    if (getNoteFolder().isEmpty())
        return {};
    const QString note = getNoteFolder() + QLatin1Char('/') + kNotePrefix + QString::number(++count);
    const bool isLeft = symlink(QFile::encodeName(QFileInfo(path).absoluteFilePath()).constData(),
                                QFile::encodeName(note).constData()) == 0;
    return isLeft ? note : QString();
}

/// A new file with the permissions of the one that it is to replace, if there is one; -1 and errno if it
/// can't be made.
int make(const QString& path, const QString& replacedPath)
{
    struct stat replaced = {};
    const bool isThere = stat(QFile::encodeName(replacedPath).constData(), &replaced) == 0;
    const mode_t permissions = isThere ? replaced.st_mode & kPermissions : 0666;
    const int descriptor =
        open(QFile::encodeName(path).constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, permissions);
    // What the user's mask keeps from new files the old one may have had.
    if (descriptor >= 0 && isThere)
        fchmod(descriptor, permissions);
    return descriptor;
}

bool isOwnRegularFile(const QString& path)
{
    struct stat status = {};
    return lstat(QFile::encodeName(path).constData(), &status) == 0 && S_ISREG(status.st_mode) &&
           status.st_uid == geteuid();
}

} // namespace

UnfinishedFile::UnfinishedFile(const QString& targetPath) : target(targetPath)
{}

UnfinishedFile::~UnfinishedFile()
{
    close();
    if (!path.isEmpty())
        QFile::remove(path);
    forget();
}

bool UnfinishedFile::open(OpenMode mode)
{
    const QFileInfo existing(target);
    if (existing.isDir())
        return fail(qt_error_string(EISDIR));
    if (existing.exists() && !existing.isWritable())
        return fail(qt_error_string(EACCES));
    // A link stays, and what it leads to is replaced.
    if (existing.isSymLink())
        target = existing.exists() ? existing.canonicalFilePath() : existing.symLinkTarget();

    const QString newPath = target + QLatin1Char('.') + randomname::make();
    note = leaveNote(newPath);
    const int descriptor = make(newPath, target);
    if (descriptor < 0)
        return fail(qt_error_string());
    path = newPath;
    return QFile::open(descriptor, mode, AutoCloseHandle);
}

bool UnfinishedFile::sync()
{
    // Some file systems cannot; there is nothing to wait for then.
    if (fsync(handle()) == 0 || errno == EINVAL || errno == ENOTSUP || errno == ENOSYS)
        return true;
    return fail(qt_error_string());
}

bool UnfinishedFile::commit()
{
    if (hasFailed)
        return false;
    close();
    if (std::rename(QFile::encodeName(path).constData(), QFile::encodeName(target).constData()) != 0)
        return fail(qt_error_string());
    path.clear();
    forget();
    return true;
}

void UnfinishedFile::noteIn(const QString& folder)
{
    getNoteFolder() = folder;
}

void UnfinishedFile::removeThoseNotedIn(const QString& folder)
{
    static const QRegularExpression ending(QStringLiteral("\\.[a-z0-9]{%1}$").arg(randomname::kLength));
    const QDir notes(folder);
    const QStringList names = notes.entryList({kNotePrefix + QLatin1Char('*')}, QDir::Files | QDir::System);
    for (const QString& name : names) {
        const QString path = QFile::symLinkTarget(notes.filePath(name));
        if (ending.match(path).hasMatch() && isOwnRegularFile(path))
            QFile::remove(path);
    }
}

/// A write that stops half-way, as on a full disk, is a failed write: Qt reports only one that writes nothing
/// at all.
qint64 UnfinishedFile::writeData(const char* data, qint64 size)
{
    qint64 written = 0;
    while (written < size) {
        const qint64 count = hasFailed ? -1 : QFile::writeData(data + written, size - written);
        hasFailed = count <= 0;
        if (hasFailed)
            return -1;
        written += count;
    }
    return written;
}

bool UnfinishedFile::fail(const QString& reason)
{
    setErrorString(reason);
    hasFailed = true;
    return false;
}

void UnfinishedFile::forget()
{
    if (!note.isEmpty())
        QFile::remove(note);
    note.clear();
}
