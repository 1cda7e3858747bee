#include "host/files/UnreadFiles.h"

#include "host/app/Application.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSet>

#include <cerrno>
#include <mutex>
#include <unistd.h>

namespace {

struct Registry
{
    std::mutex mutex;
    QSet<QString> paths;
};

/// Made on first use, so that it is there for the static initializers of other libraries.
Registry& getRegistry()
{
    static Registry registry;
    return registry;
}

bool forget(const QString& path)
{
    Registry& registry = getRegistry();
    const std::lock_guard lock(registry.mutex);
    return registry.paths.remove(QFileInfo(path).absoluteFilePath());
}

/// Gives the file a second name that no file has yet; empty when that failed.
QString linkBeside(const QString& path)
{
    for (int number = 1;; ++number) {
        const QString name = QStringLiteral("%1.unread-%2").arg(path, QString::number(number));
        if (link(QFile::encodeName(path).constData(), QFile::encodeName(name).constData()) == 0)
            return name;
        if (errno != EEXIST)
            return QString();
    }
}

} // namespace

namespace unreadfiles {

void add(const QString& path)
{
    Registry& registry = getRegistry();
    const std::lock_guard lock(registry.mutex);
    registry.paths.insert(QFileInfo(path).absoluteFilePath());
}

void remove(const QString& path)
{
    forget(path);
}

bool keepBeside(const QString& path)
{
    if (!forget(path) || !QFileInfo::exists(path))
        return true;
    const QString name = linkBeside(path);
    if (name.isEmpty()) {
        const int reason = errno;
        add(path);
        errno = reason;
        return false;
    }
    Application::warning(QCoreApplication::translate(
                             "Host", "Файл «%1» не удалось прочитать. То, что в нём было, осталось в «%2».")
                             .arg(QDir::toNativeSeparators(path), QDir::toNativeSeparators(name)),
                         nullptr);
    return true;
}

} // namespace unreadfiles
