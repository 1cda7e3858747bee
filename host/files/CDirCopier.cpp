#include "host/files/CDirCopier.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryFile>

#include <cstdio>

namespace {

constexpr qint64 kBlockSize = 65536;

/// The folder, or while it is not there yet the nearest one above it, without symbolic links.
QString getExistingFolder(const QString& path)
{
    QFileInfo folder(QDir::cleanPath(QFileInfo(path).absoluteFilePath()));
    while (!folder.exists())
        folder.setFile(folder.path());
    return folder.canonicalFilePath();
}

bool isSameOrInside(const QString& folder, const QString& outerFolder)
{
    return (folder + QLatin1Char('/')).startsWith(outerFolder + QLatin1Char('/'));
}

bool hasSameContent(const QString& path, const QString& otherPath)
{
    QFile file(path);
    QFile otherFile(otherPath);
    if (!file.open(QIODevice::ReadOnly) || !otherFile.open(QIODevice::ReadOnly) ||
        file.size() != otherFile.size())
        return false;
    while (!file.atEnd()) {
        const QByteArray block = file.read(kBlockSize);
        if (block.isEmpty() || block != otherFile.read(kBlockSize))
            return false;
    }
    return true;
}

bool copyBytes(QFile& source, QFile& target)
{
    while (!source.atEnd()) {
        const QByteArray block = source.read(kBlockSize);
        if (block.isEmpty() || target.write(block) != block.size())
            return false;
    }
    return target.flush();
}

} // namespace

CDirCopier::CDirCopier(int copyMode) : mode(copyMode)
{}

void CDirCopier::setCopyOption(int option)
{
    copyOption = option;
}

bool CDirCopier::copyDir(const QString& from, const QString& to)
{
    const QFileInfo source(QDir(from).absolutePath());
    if (from.isEmpty() || to.isEmpty() || !source.isDir())
        return false;
    const QString target = mode == WholeFolder ? to + QLatin1Char('/') + source.fileName() : to;
    if (isSameOrInside(getExistingFolder(target), source.canonicalFilePath()))
        return false;
    return QDir().mkpath(to) && (mode != WholeFolder || makeFolder(target)) &&
           copyContents(source.filePath(), target);
}

bool CDirCopier::copyContents(const QString& from, const QString& to) const
{
    bool isComplete = true;
    const QFileInfoList entries =
        QDir(from).entryInfoList(QDir::Files | QDir::Dirs | QDir::Hidden | QDir::NoDotAndDotDot);
    for (const QFileInfo& entry : entries) {
        const QString target = to + QLatin1Char('/') + entry.fileName();
        if (!entry.isDir())
            isComplete = copyFile(entry, target) && isComplete;
        else if (!entry.isSymLink())
            isComplete = makeFolder(target) && copyContents(entry.filePath(), target) && isComplete;
    }
    return isComplete;
}

bool CDirCopier::makeFolder(const QString& path) const
{
    const QFileInfo present(path);
    if (present.isSymLink())
        return copyOption == OverwriteOutdated && QFile::remove(path) && QDir().mkdir(path);
    return present.isDir() || QDir().mkdir(path);
}

bool CDirCopier::copyFile(const QFileInfo& source, const QString& target) const
{
    if (!isToBeCopied(source, QFileInfo(target)))
        return true;
    QFile sourceFile(source.filePath());
    QTemporaryFile newFile(target + QStringLiteral(".XXXXXX"));
    if (!sourceFile.open(QIODevice::ReadOnly) || !newFile.open() || !copyBytes(sourceFile, newFile) ||
        !newFile.setPermissions(sourceFile.permissions() | QFileDevice::WriteOwner))
        return false;
    // rename() of the system puts the file in place of another one, or of a symbolic link, in one step;
    // QFile::rename() refuses to.
    const QByteArray newPath = QFile::encodeName(newFile.fileName());
    newFile.close();
    return std::rename(newPath.constData(), QFile::encodeName(target).constData()) == 0;
}

bool CDirCopier::isToBeCopied(const QFileInfo& source, const QFileInfo& target) const
{
    if (!target.exists() && !target.isSymLink())
        return true;
    if (copyOption != OverwriteOutdated)
        return false;
    return target.isSymLink() || target.lastModified() < source.lastModified() ||
           !hasSameContent(source.filePath(), target.filePath());
}
