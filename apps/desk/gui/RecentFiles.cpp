#include "apps/desk/gui/RecentFiles.h"

#include <QDir>
#include <QFileInfo>
#include <QSettings>
#include <QStandardPaths>

namespace orvel::desk {

namespace recentfiles {

namespace {

constexpr int kLimit = 10;
const QString kKey = QStringLiteral("recentFiles");

} // namespace

QStringList get()
{
    QStringList existing;
    for (const QString& path : QSettings().value(kKey).toStringList()) {
        if (QFileInfo::exists(path))
            existing.append(path);
    }
    return existing;
}

void add(const QString& path)
{
    const QString absolute = QFileInfo(path).absoluteFilePath();
    QStringList paths = get();
    paths.removeAll(absolute);
    paths.prepend(absolute);
    QSettings().setValue(kKey, QStringList(paths.mid(0, kLimit)));
}

QString getFolder()
{
    const QStringList paths = get();
    if (!paths.isEmpty())
        return QFileInfo(paths.constFirst()).path();
    // A dialog takes a folder that is not there for the name of a file.
    for (const QString& folder :
         {QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation), QDir::homePath()}) {
        if (QFileInfo(folder).isDir())
            return folder;
    }
    return QDir::rootPath();
}

} // namespace recentfiles

} // namespace orvel::desk
