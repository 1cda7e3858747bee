#include "host/files/QtFile.h"

#include "host/files/CFileException.h"
#include "host/files/StringUtils.h"
#include "host/files/UnfinishedFile.h"
#include "host/files/UnreadFiles.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

#include <optional>
#include <sys/stat.h>
#include <unistd.h>

namespace {

[[noreturn]] void fail(int code, const QString& path, const QString& reason)
{
    QString text;
    switch (code) {
    case qor::CFileException::CannotRead:
        text = QCoreApplication::translate("Host", "Не удалось прочитать файл «%1»: %2.");
        break;
    case qor::CFileException::CannotWrite:
        text = QCoreApplication::translate("Host", "Не удалось записать файл «%1»: %2.");
        break;
    default:
        text = QCoreApplication::translate("Host", "Не удалось открыть файл «%1»: %2.");
        break;
    }
    throw qor::CFileException(
        code, text.arg(QDir::toNativeSeparators(path), utils::describeReason(reason)).toStdWString());
}

/// Whether this process's descriptor of that number is of the file that the path leads to.
bool isDescriptorOf(int number, const QString& path)
{
    struct stat open = {};
    struct stat named = {};
    return fstat(number, &open) == 0 && stat(QFile::encodeName(path).constData(), &named) == 0 &&
           open.st_dev == named.st_dev && open.st_ino == named.st_ino;
}

/// The descriptor that a path like /dev/stdout is a name of.
std::optional<int> findNamedDescriptor(const QString& path)
{
    const QString clean = QDir::cleanPath(path);
    const QStringList streams{QStringLiteral("/dev/stdin"), QStringLiteral("/dev/stdout"),
                              QStringLiteral("/dev/stderr")};
    if (streams.contains(clean))
        return streams.indexOf(clean);
    for (const auto& folder : {QStringLiteral("/dev/fd/"), QStringLiteral("/proc/self/fd/")}) {
        bool isNumber = false;
        const int number = clean.mid(folder.size()).toInt(&isNumber);
        if (clean.startsWith(folder) && isNumber)
            return number;
    }
    static const QRegularExpression processes(QStringLiteral("^/proc/[0-9]+/fd/([0-9]+)$"));
    const QRegularExpressionMatch match = processes.match(clean);
    const int number = match.captured(1).toInt();
    return match.hasMatch() && isDescriptorOf(number, path) ? std::optional<int>(number) : std::nullopt;
}

/// The descriptor that a path like /dev/stdout stands for, or a link to such a path. Opened by its name a
/// regular file behind it would be written from its start, or replaced; this one is written where it stands.
std::optional<int> findDescriptor(const QString& path)
{
    // As many links as the system follows.
    constexpr int mostLinks = 40;
    QString step = path;
    for (int i = 0; i < mostLinks; ++i) {
        if (const std::optional<int> descriptor = findNamedDescriptor(step))
            return descriptor;
        const QFileInfo link(step);
        if (!link.isSymLink())
            return std::nullopt;
        step = link.symLinkTarget();
    }
    return std::nullopt;
}

/// Whether the path is a link that somebody else has laid into a folder where everybody may: it could lead
/// what is written over any file of this user.
bool isForeignLink(const QString& path)
{
    struct stat link = {};
    struct stat folder = {};
    if (lstat(QFile::encodeName(path).constData(), &link) != 0 || !S_ISLNK(link.st_mode))
        return false;
    const QByteArray folderPath = QFile::encodeName(QFileInfo(path).absolutePath());
    if (stat(folderPath.constData(), &folder) != 0)
        return false;
    const bool isShared = (folder.st_mode & S_ISVTX) != 0 && (folder.st_mode & S_IWOTH) != 0;
    return isShared && link.st_uid != geteuid() && link.st_uid != folder.st_uid;
}

} // namespace

QtFile::QtFile(const QString& filePath) : path(filePath)
{}

QtFile::~QtFile()
{
    if (file && !file->isWritable() && file->error() != QFileDevice::NoError)
        unreadfiles::add(path);
}

void QtFile::open(QIODevice::OpenMode mode)
{
    file.reset();
    // A file would be written beside an empty name, that is into the current folder.
    if (path.isEmpty())
        fail(qor::CFileException::CannotOpen, path, QCoreApplication::translate("Host", "имя файла пусто"));
    const QIODevice::OpenMode direction = mode & ~(QIODevice::Text | QIODevice::Truncate);
    if (direction == QIODevice::ReadOnly)
        openForReading(mode);
    else if (direction == QIODevice::WriteOnly)
        openForWriting(mode);
    else
        fail(qor::CFileException::CannotOpen, path,
             QCoreApplication::translate("Host", "такой способ открытия не поддерживается"));
}

QIODevice* QtFile::device() const
{
    return file.get();
}

void QtFile::close()
{
    if (!file)
        return;
    const std::unique_ptr<QFileDevice> closing = std::move(file);
    const int code =
        closing->isWritable() ? qor::CFileException::CannotWrite : qor::CFileException::CannotRead;
    // Before anything else: closing forgets an earlier failure.
    if (!closing->flush() || closing->error() != QFileDevice::NoError) {
        if (!closing->isWritable())
            unreadfiles::add(path);
        fail(code, path, closing->errorString());
    }
    auto* saveFile = dynamic_cast<UnfinishedFile*>(closing.get());
    if (!saveFile)
        return;
    if (!saveFile->sync())
        fail(code, path, saveFile->errorString());
    if (!unreadfiles::keepBeside(path))
        fail(code, path, qt_error_string());
    if (!saveFile->commit())
        fail(code, path, saveFile->errorString());
}

void QtFile::openForReading(QIODevice::OpenMode mode)
{
    auto readFile = std::make_unique<QFile>(path);
    if (!readFile->open(mode)) {
        if (QFileInfo(path).isFile())
            unreadfiles::add(path);
        fail(qor::CFileException::CannotOpen, path, readFile->errorString());
    }
    unreadfiles::remove(path);
    file = std::move(readFile);
}

void QtFile::openForWriting(QIODevice::OpenMode mode)
{
    if (isForeignLink(path))
        fail(qor::CFileException::CannotOpen, path,
             QCoreApplication::translate("Host", "это ссылка другого пользователя в общей папке"));
    if (const std::optional<int> descriptor = findDescriptor(path)) {
        openDescriptor(*descriptor, mode);
        return;
    }
    const QFileInfo target(path);
    std::unique_ptr<QFileDevice> writeFile;
    // A device or a pipe must be written to, not replaced by a file.
    if (target.exists() && !target.isFile() && !target.isDir())
        writeFile = std::make_unique<QFile>(path);
    else
        writeFile = std::make_unique<UnfinishedFile>(path);
    if (!writeFile->open(mode))
        fail(qor::CFileException::CannotOpen, path, writeFile->errorString());
    file = std::move(writeFile);
}

void QtFile::openDescriptor(int descriptor, QIODevice::OpenMode mode)
{
    auto stream = std::make_unique<QFile>();
    const int own = dup(descriptor);
    if (own < 0)
        fail(qor::CFileException::CannotOpen, path, qt_error_string());
    if (!stream->open(own, mode, QFileDevice::AutoCloseHandle))
        fail(qor::CFileException::CannotOpen, path, stream->errorString());
    file = std::move(stream);
}
